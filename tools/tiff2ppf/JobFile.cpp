#include "tiff2ppf/JobFile.h"

#include "tiff2ppf/Failure.h"
#include "tiff2ppf/Paths.h"
#include "tiff2ppf/StrictJson.h"
#include "tiff2ppf/Text.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <limits>
#include <string_view>
#include <system_error>

namespace Tiff2Ppf
{
    namespace
    {
        using Json = nlohmann::json;

        /// A value of the document and where it stands.
        struct Node
        {
            const Json& value;
            std::string place;
        };

        [[noreturn]] void Refuse(const Node& node, const std::string& why)
        {
            throw JsonFault(node.place, why);
        }

        [[noreturn]] void RefuseType(const Node& node, const std::string& wanted)
        {
            const std::string type = node.value.type_name();
            const bool startsWithVowel = node.value.is_object() || node.value.is_array();
            Refuse(
                node,
                wanted + " is needed, not " + (node.value.is_null() ? type : (startsWithVowel ? "an " : "a ") + type));
        }

        /// Refuses a node that is no object, or has a member that is not among `known`.
        void CheckMembers(const Node& object, std::initializer_list<const char*> known)
        {
            if (!object.value.is_object())
            {
                RefuseType(object, "an object");
            }
            for (const auto& [key, value] : object.value.items())
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

        Node MemberOf(const Node& object, const char* key)
        {
            return {object.value.at(key), PlaceOfMember(object.place, key)};
        }

        std::string TextOf(const Node& node)
        {
            if (!node.value.is_string())
            {
                RefuseType(node, "a string");
            }
            const auto& text = node.value.get_ref<const std::string&>();
            if (text.find('\0') != std::string::npos)
            {
                Refuse(node, "a string may not hold the character \\u0000");
            }
            return text;
        }

        /// The member's text, or `absent` if there is no such member.
        std::string TextOfMember(const Node& object, const char* key, const std::string& absent)
        {
            return object.value.contains(key) ? TextOf(MemberOf(object, key)) : absent;
        }

        /// Calls `take` for each element of the array that is the member `key`; none if there is no such member.
        template <class Take>
        void ForEachElement(const Node& object, const char* key, Take take)
        {
            if (!object.value.contains(key))
            {
                return;
            }
            const Node array = MemberOf(object, key);
            if (!array.value.is_array())
            {
                RefuseType(array, "an array");
            }
            for (std::size_t i = 0; i < array.value.size(); ++i)
            {
                take(Node{array.value[i], PlaceOfElement(array.place, i)});
            }
        }

        Number NumberOf(const Node& node)
        {
            if (node.value.is_number_float())
            {
                return node.value.get<double>();
            }
            if (node.value.is_number_unsigned())
            {
                const auto value = node.value.get<std::uint64_t>();
                if (value <= std::numeric_limits<std::int32_t>::max())
                {
                    return static_cast<std::int32_t>(value);
                }
                if (value <= std::numeric_limits<std::uint32_t>::max())
                {
                    return static_cast<std::uint32_t>(value);
                }
            }
            else
            {
                const auto value = node.value.get<std::int64_t>();
                if (value >= std::numeric_limits<std::int32_t>::min())
                {
                    return static_cast<std::int32_t>(value);
                }
            }
            Refuse(node, "the integer " + node.value.dump() + " is outside -2147483648 to 4294967295");
        }

        Measure MeasureOf(const Node& node)
        {
            const char* const wanted = "an object here has exactly the members \"value\" and \"units\"";
            if (node.value.size() != 2 || !node.value.contains("value") || !node.value.contains("units"))
            {
                Refuse(node, wanted);
            }
            const Node value = MemberOf(node, "value");
            if (!value.value.is_number())
            {
                RefuseType(value, "a number");
            }
            return {NumberOf(value), TextOf(MemberOf(node, "units"))};
        }

        ParameterValue ParameterValueOf(const Node& node)
        {
            if (node.value.is_number())
            {
                return NumberOf(node);
            }
            if (node.value.is_object())
            {
                return MeasureOf(node);
            }
            if (node.value.is_string())
            {
                return TextOf(node);
            }
            RefuseType(node, "a string, a number, or an object of value and units");
        }

        std::map<std::string, ParameterValue> ParametersOf(const Node& sheet)
        {
            std::map<std::string, ParameterValue> parameters;
            if (!sheet.value.contains("parameters"))
            {
                return parameters;
            }
            const Node object = MemberOf(sheet, "parameters");
            if (!object.value.is_object())
            {
                RefuseType(object, "an object");
            }
            for (const auto& [key, value] : object.value.items())
            {
                const Node node{value, PlaceOfMember(object.place, key)};
                if (key.empty() || key.find('\0') != std::string::npos)
                {
                    Refuse(node, "a parameter's name is not empty and does not hold the character \\u0000");
                }
                parameters.emplace(key, ParameterValueOf(node));
            }
            return parameters;
        }

        std::vector<Separation> SeparationsOf(const Node& sheet, const char* surface, const std::string& folder)
        {
            std::vector<Separation> separations;
            ForEachElement(
                sheet, surface,
                [&](const Node& node)
                {
                    CheckMembers(node, {"separation", "file"});
                    for (const char* const needed : {"separation", "file"})
                    {
                        if (!node.value.contains(needed))
                        {
                            Refuse(node, std::string("the member \"") + needed + "\" is missing");
                        }
                    }
                    const Node file = MemberOf(node, "file");
                    const std::string name = TextOf(file);
                    if (name.empty())
                    {
                        Refuse(file, "the file name is empty");
                    }
                    separations.push_back({TextOf(MemberOf(node, "separation")), AbsolutePath(name, folder)});
                });
            return separations;
        }

        /// The value of the member `key` by `valueOfWord`, if there is such a member.
        template <class Value>
        std::optional<Value> ChoiceOf(
            const Node& root, const char* key, std::optional<Value> (*valueOfWord)(const std::string&),
            const char* words)
        {
            if (!root.value.contains(key))
            {
                return std::nullopt;
            }
            const Node member = MemberOf(root, key);
            const std::optional<Value> value = valueOfWord(TextOf(member));
            if (!value)
            {
                Refuse(member, Quoted(TextOf(member)) + " is none of: " + words);
            }
            return value;
        }

        Job JobOf(const Node& root, const std::string& folder)
        {
            CheckMembers(root, {"jobName", "compression", "encoding", "sheets"});
            Job job;
            job.compression = ChoiceOf(root, "compression", &CompressionOfWord, CompressionWords);
            job.encoding = ChoiceOf(root, "encoding", &EncodingOfWord, EncodingWords);
            const std::string jobName = TextOfMember(root, "jobName", {});
            ForEachElement(
                root, "sheets",
                [&](const Node& node)
                {
                    CheckMembers(node, {"jobName", "sheetName", "front", "back", "parameters"});
                    Sheet sheet;
                    sheet.jobName = TextOfMember(node, "jobName", jobName);
                    sheet.sheetName = TextOfMember(node, "sheetName", {});
                    sheet.front = SeparationsOf(node, "front", folder);
                    sheet.back = SeparationsOf(node, "back", folder);
                    sheet.parameters = ParametersOf(node);
                    job.sheets.push_back(std::move(sheet));
                });
            return job;
        }

        bool IsDescriptor(const std::string& path)
        {
            return path.rfind("/dev/", 0) == 0 || path.rfind("/proc/", 0) == 0;
        }

        /// Whether the file begins as TIFF does; its reading goes on from the start.
        bool IsTiff(std::ifstream& file)
        {
            char begin[4] = {};
            const std::string_view mark(begin, file.read(begin, sizeof begin) ? sizeof begin : 0);
            file.clear();
            file.seekg(0);
            return mark == std::string_view("II*\0", 4) || mark == std::string_view("MM\0*", 4) ||
                   mark == std::string_view("II+\0", 4) || mark == std::string_view("MM\0+", 4);
        }

        Job LoadFrom(std::istream& in, const std::string& folder)
        {
            Job job = ReadJob(in, folder);
            CheckJob(job);
            return job;
        }
    }

    Job ReadJob(std::istream& in, const std::string& folder)
    {
        try
        {
            const Json document = ReadStrictJson(in);
            return JobOf({document, {}}, folder);
        }
        catch (const JsonFault& fault)
        {
            throw UsageError(fault.what());
        }
    }

    Job LoadJobFile(const std::string& name, std::istream& standardInput)
    {
        const bool isStandardInput = name == "-";
        const std::string shownName = isStandardInput ? "standard input" : name;
        const std::string current = CurrentFolder();
        try
        {
            if (isStandardInput)
            {
                return LoadFrom(standardInput, current);
            }
            const std::string path = AbsolutePath(name, current);
            std::ifstream file(path, std::ios::binary);
            if (!file)
            {
                throw std::ios_base::failure("open", std::error_code(errno, std::generic_category()));
            }
            if (std::filesystem::is_regular_file(path) && IsTiff(file))
            {
                throw UsageError("this is a TIFF, not a job file; a separation is given as --front INK=FILE");
            }
            return LoadFrom(file, IsDescriptor(path) ? current : FolderOf(path));
        }
        catch (const UsageError& error)
        {
            throw UsageError(shownName + ": " + error.what());
        }
        catch (const std::ios_base::failure& failure)
        {
            throw UsageError(shownName + ": the job file cannot be read: " + failure.code().message());
        }
    }
}
