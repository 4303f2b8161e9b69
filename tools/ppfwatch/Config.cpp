#include "ppfwatch/Config.h"

#include "host/Failure.h"
#include "host/Paths.h"
#include "host/Text.h"
#include "job/Job.h"
#include "job/JobFile.h"
#include "job/StrictJson.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <fstream>
#include <iterator>
#include <string_view>
#include <type_traits>
#include <variant>

namespace PpfWatch
{
    namespace
    {
        using Jobs::JsonObject;
        using Jobs::JsonValue;
        using JsonFault = Jobs::JsonRefusal;

        constexpr std::array<const char*, 10> Members = {"in",         "out",           "done",        "failed",
                                                         "names",      "settleSeconds", "separations", "workers",
                                                         "resolution", "parameters"};

        constexpr double MaxSettleSeconds = 86400;
        constexpr std::uint64_t MaxSeparations = 1000000;
        constexpr std::uint64_t MaxWorkers = 256;

        // What a converter takes for the resolution of previews, in pixels per inch.
        constexpr double MinResolution = 1;
        constexpr double MaxResolution = 2400;

        /// The member, or null if there is none of that name.
        const JsonValue* Find(const JsonObject& config, const char* key)
        {
            const auto found = config.find(key);
            return found == config.end() ? nullptr : &found->second;
        }

        std::string TextOf(const JsonObject& config, const char* key, const char* absent)
        {
            const JsonValue* const value = Find(config, key);
            if (value == nullptr)
            {
                return absent;
            }
            const auto* const text = value->As<std::string>();
            if (text == nullptr)
            {
                throw JsonFault(key, "a string is needed");
            }
            if (text->empty() || text->find('\0') != std::string::npos)
            {
                throw JsonFault(key, "this may not be empty or hold the character \\u0000");
            }
            return *text;
        }

        /// Without "." and empty parts, so that a folder has one spelling; ".." stays, as links give it its meaning.
        std::string Tidied(const std::string& path)
        {
            std::string tidied;
            std::string_view rest = path;
            while (!rest.empty())
            {
                const std::string_view part = rest.substr(0, rest.find('/'));
                rest.remove_prefix(std::min(rest.size(), part.size() + 1));
                if (!part.empty() && part != ".")
                {
                    tidied += '/' + std::string(part);
                }
            }
            return tidied.empty() ? "/" : tidied;
        }

        std::uint64_t CountOf(
            const JsonObject& config, const char* key, std::uint64_t absent, std::uint64_t least, std::uint64_t most)
        {
            const JsonValue* const value = Find(config, key);
            if (value == nullptr)
            {
                return absent;
            }
            const auto* const count = value->As<std::uint64_t>();
            if (count == nullptr || *count < least || *count > most)
            {
                throw JsonFault(
                    key, "an integer from " + std::to_string(least) + " to " + std::to_string(most) + " is needed");
            }
            return *count;
        }

        /// The number that the value is; less than any that is taken if it is none.
        double NumberOf(const JsonValue& value)
        {
            return std::visit(
                [](const auto& is) -> double
                {
                    using Type = std::decay_t<decltype(is)>;
                    if constexpr (std::is_arithmetic_v<Type> && !std::is_same_v<Type, bool>)
                    {
                        return static_cast<double>(is);
                    }
                    return -1;
                },
                value.is);
        }

        std::chrono::milliseconds SettleOf(const JsonObject& config)
        {
            constexpr double Absent = 5;
            constexpr double MillisecondsPerSecond = 1000;
            double seconds = Absent;
            if (const JsonValue* const value = Find(config, "settleSeconds"))
            {
                seconds = NumberOf(*value);
                if (!(seconds >= 0 && seconds <= MaxSettleSeconds))
                {
                    throw JsonFault("settleSeconds", "a number of seconds from 0 to 86400 is needed");
                }
            }
            return std::chrono::milliseconds(std::llround(seconds * MillisecondsPerSecond));
        }

        std::string ResolutionOf(const JsonObject& config)
        {
            const JsonValue* const value = Find(config, "resolution");
            if (value == nullptr)
            {
                return "auto";
            }
            const auto* const word = value->As<std::string>();
            const bool isWord = word != nullptr && (*word == "auto" || *word == "keep");
            const bool isNumber = NumberOf(*value) >= MinResolution && NumberOf(*value) <= MaxResolution;
            if (!isWord && !isNumber)
            {
                throw JsonFault("resolution", "\"auto\", \"keep\", or a number from 1 to 2400 is needed");
            }
            return isWord ? *word : JsonText(*value);
        }

        /// The text that a value becomes in a PPF file.
        std::string PostScriptOf(const Jobs::Number& number)
        {
            constexpr int FractionDigits = 6;
            return std::visit(
                [](auto value)
                {
                    std::array<char, 400> text{}; // the largest double has 309 digits before its point
                    char* end = nullptr;
                    if constexpr (std::is_floating_point_v<decltype(value)>)
                    {
                        end = std::to_chars(text.begin(), text.end(), value, std::chars_format::fixed, FractionDigits)
                                  .ptr;
                    }
                    else
                    {
                        end = std::to_chars(text.begin(), text.end(), value).ptr;
                    }
                    return std::string(text.begin(), end);
                },
                number);
        }

        std::string PostScriptOf(const Jobs::ParameterValue& value)
        {
            if (const auto* const number = std::get_if<Jobs::Number>(&value))
            {
                return PostScriptOf(*number);
            }
            if (const auto* const measure = std::get_if<Jobs::Measure>(&value))
            {
                return PostScriptOf(measure->value) + ' ' + measure->units;
            }
            return std::get<std::string>(value);
        }

        /// A sheet's parameters in a job file obey the rules of job files, so that is where they are checked: in the smallest
        /// job that has them.
        void TakeParameters(const JsonValue& parameters, Config& config)
        {
            config.parameters = JsonText(parameters);
            try
            {
                const Jobs::Job read = Jobs::ReadJob(
                    R"({"sheets":[{"front":[{"separation":"Black","file":"k.tif"}],"parameters":)" + config.parameters +
                        "}]}",
                    "/");
                for (const auto& [key, value] : read.sheets.front().parameters)
                {
                    config.parameterText[key] = PostScriptOf(value);
                }
            }
            catch (const Host::UsageError& error)
            {
                const std::string what = error.what();
                const std::string place = "sheets[0].";
                throw JsonFault(what.rfind(place, 0) == 0 ? what.substr(place.size()) : what);
            }
        }

        NamePattern NamesOf(const JsonObject& json)
        {
            try
            {
                return NamePattern(TextOf(json, "names", "{job}_{sheet}_{side}_{ink}.tif"));
            }
            catch (const Host::UsageError& error)
            {
                throw JsonFault("names", error.what());
            }
        }

        void CheckMembers(const JsonObject& json)
        {
            for (const auto& [key, value] : json)
            {
                if (std::find(Members.begin(), Members.end(), key) == Members.end())
                {
                    std::string why = "there is no such member here; known are";
                    for (const char* const name : Members)
                    {
                        why += std::string(name == Members.front() ? " " : ", ") + name;
                    }
                    throw JsonFault(Jobs::PlaceOfMember({}, key), why);
                }
            }
        }

        Config ConfigOf(const JsonValue& value, const std::string& folder)
        {
            const auto* const members = value.As<JsonObject>();
            if (members == nullptr)
            {
                throw JsonFault("an object is needed");
            }
            const JsonObject& json = *members;
            CheckMembers(json);
            const auto folderOf = [&](const char* key)
            { return Tidied(Host::AbsolutePath(TextOf(json, key, key), folder)); };

            Config config{folderOf("in"),     folderOf("out"), folderOf("done"),
                          folderOf("failed"), NamesOf(json),   SettleOf(json)};
            const std::array<std::pair<const char*, const std::string*>, 3> others = {
                {{"out", &config.out}, {"done", &config.done}, {"failed", &config.failed}}};
            for (const auto& [key, path] : others)
            {
                if (*path == config.in)
                {
                    throw JsonFault(
                        key, "this is the same folder as \"in\", which would take what comes out for a job");
                }
            }
            constexpr std::uint64_t DefaultWorkers = 2;
            config.separations = CountOf(json, "separations", 0, 0, MaxSeparations);
            config.workers = CountOf(json, "workers", DefaultWorkers, 1, MaxWorkers);
            config.resolution = ResolutionOf(json);
            const JsonValue* const parameters = Find(json, "parameters");
            TakeParameters(parameters == nullptr ? JsonValue{JsonObject()} : *parameters, config);
            return config;
        }
    }

    Config LoadConfig(const std::string& path)
    {
        const std::string place = Host::AbsolutePath(path, Host::CurrentFolder());
        try
        {
            std::ifstream file(place, std::ios::binary);
            if (!file)
            {
                throw Host::UsageError(path + ": the configuration cannot be read: " + Host::SystemText(errno));
            }
            const std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
            return ConfigOf(Jobs::ReadStrictJson(text), Host::FolderOf(place));
        }
        catch (const JsonFault& fault)
        {
            throw Host::UsageError(path + ": " + fault.what());
        }
        catch (const std::ios_base::failure&)
        {
            throw Host::UsageError(path + ": the configuration cannot be read: " + Host::SystemText(errno));
        }
    }
}
