#include "job/JobFile.h"

#include "host/Descriptor.h"
#include "host/Failure.h"
#include "host/Paths.h"
#include "host/Text.h"
#include "job/InkFile.h"
#include "job/InkSet.h"
#include "job/StrictJson.h"

#include <algorithm>
#include <cerrno>
#include <initializer_list>
#include <limits>

#include <fcntl.h>
#include <unistd.h>

namespace Jobs
{
    namespace
    {
        /// A value of the document and where it stands.
        struct Node
        {
            const JsonValue& value;
            std::string place;
        };

        [[noreturn]] void Refuse(const Node& node, const std::string& why)
        {
            throw JsonRefusal(node.place, why);
        }

        [[noreturn]] void RefuseType(const Node& node, const std::string& wanted)
        {
            constexpr const char* Types[] = {"null",     "a boolean", "a number", "a number",
                                             "a number", "a string",  "an array", "an object"};
            Refuse(node, wanted + " is needed, not " + Types[node.value.is.index()]);
        }

        /// The members of a node, which has to be an object.
        const JsonObject& MembersOf(const Node& node)
        {
            const auto* const members = node.value.As<JsonObject>();
            if (members == nullptr)
            {
                RefuseType(node, "an object");
            }
            return *members;
        }

        /// Refuses a node that is not an object, or has a member that is not among `known`.
        void CheckMembers(const Node& object, std::initializer_list<const char*> known)
        {
            for (const auto& [key, value] : MembersOf(object))
            {
                if (std::find(known.begin(), known.end(), key) == known.end())
                {
                    std::string why = "there is no such member here; known are";
                    for (const char* const name : known)
                    {
                        why += std::string(name == *known.begin() ? " " : ", ") + name;
                    }
                    Refuse({value, PlaceOfMember(object.place, key)}, why);
                }
            }
        }

        std::optional<Node> FindMember(const Node& object, const char* key)
        {
            const JsonObject& members = MembersOf(object);
            const auto found = members.find(key);
            return found == members.end() ? std::nullopt
                                          : std::optional<Node>({found->second, PlaceOfMember(object.place, key)});
        }

        Node MemberOf(const Node& object, const char* key)
        {
            const std::optional<Node> member = FindMember(object, key);
            if (!member)
            {
                Refuse(object, std::string("the member \"") + key + "\" is missing");
            }
            return *member;
        }

        std::string TextOf(const Node& node)
        {
            const auto* const text = node.value.As<std::string>();
            if (text == nullptr)
            {
                RefuseType(node, "a string");
            }
            if (text->find('\0') != std::string::npos)
            {
                Refuse(node, "a string may not hold the character \\u0000");
            }
            return *text;
        }

        /// The member's text, or `absent` if there is no such member.
        std::string TextOfMember(const Node& object, const char* key, const std::string& absent)
        {
            const std::optional<Node> member = FindMember(object, key);
            return member ? TextOf(*member) : absent;
        }

        /// Calls `take` for each element of the array that is the member `key`; none if there is no such member.
        template <class Take>
        void ForEachElement(const Node& object, const char* key, Take take)
        {
            const std::optional<Node> member = FindMember(object, key);
            if (!member)
            {
                return;
            }
            const auto* const elements = member->value.As<JsonArray>();
            if (elements == nullptr)
            {
                RefuseType(*member, "an array");
            }
            for (std::size_t i = 0; i < elements->size(); ++i)
            {
                take(Node{(*elements)[i], PlaceOfElement(member->place, i)});
            }
        }

        [[noreturn]] void RefuseInteger(const Node& node, const std::string& integer)
        {
            Refuse(node, "the integer " + integer + " is outside -2147483648 to 4294967295");
        }

        Number NumberOf(const Node& node)
        {
            if (const auto* const value = node.value.As<std::uint64_t>())
            {
                if (*value <= std::numeric_limits<std::int32_t>::max())
                {
                    return static_cast<std::int32_t>(*value);
                }
                if (*value <= std::numeric_limits<std::uint32_t>::max())
                {
                    return static_cast<std::uint32_t>(*value);
                }
                RefuseInteger(node, std::to_string(*value));
            }
            if (const auto* const value = node.value.As<std::int64_t>())
            {
                if (*value >= std::numeric_limits<std::int32_t>::min())
                {
                    return static_cast<std::int32_t>(*value);
                }
                RefuseInteger(node, std::to_string(*value));
            }
            if (const auto* const value = node.value.As<double>())
            {
                return *value;
            }
            RefuseType(node, "a number");
        }

        double DoubleOf(const JsonValue& number)
        {
            const auto* const asSigned = number.As<std::int64_t>();
            const auto* const asUnsigned = number.As<std::uint64_t>();
            return asSigned != nullptr     ? static_cast<double>(*asSigned)
                   : asUnsigned != nullptr ? static_cast<double>(*asUnsigned)
                                           : *number.As<double>();
        }

        Measure MeasureOf(const Node& node)
        {
            const std::optional<Node> value = FindMember(node, "value");
            const std::optional<Node> units = FindMember(node, "units");
            if (!value || !units || MembersOf(node).size() != 2)
            {
                Refuse(node, "an object here has exactly the members \"value\" and \"units\"");
            }
            return {NumberOf(*value), TextOf(*units)};
        }

        ParameterValue ParameterValueOf(const Node& node)
        {
            if (node.value.IsNumber())
            {
                return NumberOf(node);
            }
            if (node.value.As<JsonObject>() != nullptr)
            {
                return MeasureOf(node);
            }
            if (node.value.As<std::string>() != nullptr)
            {
                return TextOf(node);
            }
            RefuseType(node, "a string, a number, or an object of value and units");
        }

        std::map<std::string, ParameterValue> ParametersOf(const Node& sheet)
        {
            std::map<std::string, ParameterValue> parameters;
            const std::optional<Node> object = FindMember(sheet, "parameters");
            if (!object)
            {
                return parameters;
            }
            for (const auto& [key, value] : MembersOf(*object))
            {
                const Node node{value, PlaceOfMember(object->place, key)};
                if (key.empty() || key.find('\0') != std::string::npos)
                {
                    Refuse(node, "a parameter's name is not empty and does not hold the character \\u0000");
                }
                parameters.emplace(key, ParameterValueOf(node));
            }
            return parameters;
        }

        std::string FileOf(const Node& node, const std::string& folder)
        {
            const std::string name = TextOf(node);
            if (name.empty())
            {
                Refuse(node, "the file name is empty");
            }
            return Host::AbsolutePath(name, folder);
        }

        /// The member's number, counted from 1; 0 if there is no such member.
        std::uint32_t CountOfMember(const Node& object, const char* key)
        {
            const std::optional<Node> member = FindMember(object, key);
            if (!member)
            {
                return 0;
            }
            const auto* const count = member->value.As<std::uint64_t>();
            if (count == nullptr || *count < 1 || *count > std::numeric_limits<std::uint32_t>::max())
            {
                Refuse(*member, "a whole number is needed, counted from 1");
            }
            return static_cast<std::uint32_t>(*count);
        }

        Separation SeparationOf(const Node& node, const std::string& folder)
        {
            CheckMembers(node, {"separation", "file", "page", "channel", "inks", "set"});
            Separation separation;
            separation.name = TextOf(MemberOf(node, "separation"));
            separation.file = FileOf(MemberOf(node, "file"), folder);
            separation.page = CountOfMember(node, "page");
            separation.channel = CountOfMember(node, "channel");
            return separation;
        }

        std::vector<Separation> SetOf(const Node& pattern, const std::string& folder)
        {
            try
            {
                return SeparationsOfSet(TextOf(pattern), folder);
            }
            catch (const Host::UsageError& refusal)
            {
                Refuse(pattern, refusal.what());
            }
        }

        std::vector<Separation> SeparationsOf(const Node& sheet, const char* surface, const std::string& folder)
        {
            std::vector<Separation> separations;
            ForEachElement(
                sheet, surface,
                [&](const Node& node)
                {
                    if (const std::optional<Node> set = FindMember(node, "set"))
                    {
                        CheckMembers(node, {"set"});
                        const std::vector<Separation> all = SetOf(*set, folder);
                        separations.insert(separations.end(), all.begin(), all.end());
                    }
                    else if (const std::optional<Node> inks = FindMember(node, "inks"))
                    {
                        CheckMembers(node, {"inks"});
                        separations.push_back(EveryInkOf(FileOf(*inks, folder)));
                    }
                    else
                    {
                        separations.push_back(SeparationOf(node, folder));
                    }
                });
            return separations;
        }

        /// The value of the member `key` by `valueOfWord`, if there is such a member.
        template <class Value>
        std::optional<Value> ChoiceOf(
            const Node& root, const char* key, std::optional<Value> (*valueOfWord)(const std::string&),
            const char* words)
        {
            const std::optional<Node> member = FindMember(root, key);
            if (!member)
            {
                return std::nullopt;
            }
            const std::optional<Value> value = valueOfWord(TextOf(*member));
            if (!value)
            {
                Refuse(*member, Host::Quoted(TextOf(*member)) + " is none of: " + words);
            }
            return value;
        }

        /// The value of the member `key`, a word or a number, if there is such a member.
        template <class Value>
        std::optional<Value> NumberOrWordOf(
            const Node& root, const char* key, std::optional<Value> (*valueOfNumber)(double),
            std::optional<Value> (*valueOfWord)(const std::string&), const char* words)
        {
            const std::optional<Node> member = FindMember(root, key);
            if (!member)
            {
                return std::nullopt;
            }
            const auto* const word = member->value.As<std::string>();
            // A number in quotes is text.
            const bool isNumberInQuotes = word != nullptr && word->find_first_of("0123456789") != std::string::npos;
            const std::optional<Value> value = member->value.IsNumber() ? valueOfNumber(DoubleOf(member->value))
                                               : word != nullptr && !isNumberInQuotes ? valueOfWord(*word)
                                                                                      : std::nullopt;
            if (!value)
            {
                Refuse(*member, std::string("this is none of: ") + words);
            }
            return value;
        }

        Orientation OrientationOf(const Node& node, const char* key, Orientation absent)
        {
            return ChoiceOf(node, key, &OrientationOfWord, OrientationWords).value_or(absent);
        }

        Job JobOf(const Node& root, const std::string& folder)
        {
            CheckMembers(
                root, {"jobName", "compression", "encoding", "resolution", "inputResolution", "frontOrientation",
                       "backOrientation", "sheets"});
            Job job;
            job.compression = ChoiceOf(root, "compression", &CompressionOfWord, CompressionWords);
            job.encoding = ChoiceOf(root, "encoding", &EncodingOfWord, EncodingWords);
            job.reduction = NumberOrWordOf(root, "resolution", &ReductionOf, &ReductionOfWord, ReductionWords)
                                .value_or(job.reduction);
            job.inputResolution =
                NumberOrWordOf(
                    root, "inputResolution", &InputResolutionOf, &InputResolutionOfWord, InputResolutionWords)
                    .value_or(job.inputResolution);
            const std::string jobName = TextOfMember(root, "jobName", {});
            const Orientation front = OrientationOf(root, "frontOrientation", Orientation::Rotate0);
            const Orientation back = OrientationOf(root, "backOrientation", Orientation::Rotate0);
            ForEachElement(
                root, "sheets",
                [&](const Node& node)
                {
                    CheckMembers(
                        node,
                        {"jobName", "sheetName", "front", "back", "frontOrientation", "backOrientation", "parameters"});
                    Sheet sheet;
                    sheet.jobName = TextOfMember(node, "jobName", jobName);
                    sheet.sheetName = TextOfMember(node, "sheetName", {});
                    sheet.front = SeparationsOf(node, "front", folder);
                    sheet.back = SeparationsOf(node, "back", folder);
                    sheet.parameters = ParametersOf(node);
                    sheet.frontOrientation = OrientationOf(node, "frontOrientation", front);
                    sheet.backOrientation = OrientationOf(node, "backOrientation", back);
                    job.sheets.push_back(std::move(sheet));
                });
            return job;
        }

        /// A job file of a hundred thousand separations has a tenth of this.
        constexpr std::size_t MaxBytes = 128U << 20U;

        /// Whether the name is of an open file, which stands in no folder; /dev/shm is a folder like others.
        bool IsDescriptor(const std::string& path)
        {
            const std::string folder = Host::FolderOf(path);
            return folder == "/dev" || folder == "/dev/fd" || path.rfind("/proc/", 0) == 0;
        }

        /// Whether the text begins as TIFF does.
        bool IsTiff(const std::string& text)
        {
            const std::string_view mark = std::string_view(text).substr(0, 4);
            return mark == std::string_view("II*\0", 4) || mark == std::string_view("MM\0*", 4) ||
                   mark == std::string_view("II+\0", 4) || mark == std::string_view("MM\0+", 4);
        }

        /// All that can be read from the open file `file`, no more than a job file has.
        std::string TextFrom(int file)
        {
            constexpr std::size_t Block = 64U << 10U;
            std::string text;
            for (;;)
            {
                const std::size_t held = text.size();
                text.resize(held + Block);
                const ssize_t got = Host::ReadAll(file, text.data() + held, Block);
                if (got < 0)
                {
                    throw Host::UsageError("the job file cannot be read: " + Host::SystemText(errno));
                }
                text.resize(held + static_cast<std::size_t>(got));
                if (static_cast<std::size_t>(got) < Block)
                {
                    return text;
                }
                if (text.size() > MaxBytes)
                {
                    throw Host::UsageError("this has more than " + std::to_string(MaxBytes) + " bytes, and no job has");
                }
            }
        }

        Job LoadFrom(int file, const std::string& folder)
        {
            const std::string text = TextFrom(file);
            if (IsTiff(text))
            {
                throw Host::UsageError("this is a TIFF, not a job file; a separation is given as --front INK=FILE");
            }
            Job job = ReadJob(text, folder);
            CheckJob(job);
            return job;
        }
    }

    Job ReadJob(std::string_view text, const std::string& folder)
    {
        try
        {
            const JsonValue document = ReadStrictJson(text);
            return JobOf({document, {}}, folder);
        }
        catch (const JsonRefusal& refusal)
        {
            throw Host::UsageError(refusal.what());
        }
    }

    Job LoadJobFile(const std::string& name)
    {
        const bool isStandardInput = name == "-";
        const std::string current = Host::CurrentFolder();
        try
        {
            if (isStandardInput)
            {
                return LoadFrom(STDIN_FILENO, current);
            }
            const std::string path = Host::AbsolutePath(name, current);
            const Host::Descriptor file(Host::Uninterrupted([&] { return open(path.c_str(), O_RDONLY | O_CLOEXEC); }));
            if (!file.IsOpen())
            {
                throw Host::UsageError("the job file cannot be read: " + Host::SystemText(errno));
            }
            return LoadFrom(file.Number(), IsDescriptor(path) ? current : Host::FolderOf(path));
        }
        catch (const Host::UsageError& error)
        {
            throw Host::UsageError((isStandardInput ? "standard input" : name) + ": " + error.what());
        }
    }
}
