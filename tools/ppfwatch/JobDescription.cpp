#include "ppfwatch/JobDescription.h"

#include "host/Failure.h"
#include "host/Text.h"
#include "job/InkSet.h"
#include "job/StrictJson.h"
#include "ppfwatch/NaturalOrder.h"

#include <algorithm>
#include <map>

namespace PpfWatch
{
    namespace
    {
        struct NaturalOrder
        {
            bool operator()(const std::string& a, const std::string& b) const { return IsNaturallyBefore(a, b); }
        };
        struct InkOrder
        {
            bool operator()(const std::string& a, const std::string& b) const { return Jobs::IsInkBefore(a, b); }
        };

        using Surface = std::map<std::string, std::string, InkOrder>; ///< file by ink
        struct Sheet
        {
            Surface front;
            Surface back;
        };
        using Sheets = std::map<std::string, Sheet, NaturalOrder>; ///< by name

        Sheets SheetsOf(const Order& order, const NamePattern& names)
        {
            Sheets sheets;
            for (const Order::Source& source : order.sources)
            {
                const SeparationName fields = names.Match(source.name).value();
                Sheet& sheet = sheets[fields.sheet];
                const std::string ink = Jobs::InkOfWord(fields.ink);
                const auto [same, isNew] = (fields.isBack ? sheet.back : sheet.front).emplace(ink, source.name);
                if (!isNew)
                {
                    throw Host::Failure(
                        "sheet " + Host::Quoted(fields.sheet) + ", " + (fields.isBack ? "back" : "front") + ": " +
                        std::min(same->second, source.name) + " and " + std::max(same->second, source.name) +
                        " are both the ink " + Host::Quoted(ink) + "; one of them is wanted");
                }
            }
            return sheets;
        }

        bool AreNamesUtf8(const Order& order)
        {
            return std::all_of(
                order.sources.begin(), order.sources.end(),
                [](const Order::Source& source) { return Host::IsUtf8(source.name); });
        }

        std::string JsonOf(const std::string& text)
        {
            return Jobs::JsonText({text});
        }

        std::string JsonOf(const Surface& surface)
        {
            std::string separations;
            for (const auto& [ink, file] : surface)
            {
                separations += separations.empty() ? "" : ",";
                separations += R"({"separation":)" + JsonOf(ink) + R"(,"file":)" + JsonOf(file) + '}';
            }
            return '[' + separations + ']';
        }

        /// Members that are left at their default are not there.
        std::string JobFileOf(const Order& order, const Sheets& sheets, const Config& config)
        {
            std::string job = R"({"jobName":)" + JsonOf(order.job);
            if (config.resolution != "auto")
            {
                job += R"(,"resolution":)" + (config.resolution == "keep" ? JsonOf("keep") : config.resolution);
            }
            job += R"(,"sheets":[)";
            const char* separator = "";
            for (const auto& [name, sheet] : sheets)
            {
                job += separator + (R"({"sheetName":)" + JsonOf(name)) + R"(,"front":)" + JsonOf(sheet.front) +
                       R"(,"back":)" + JsonOf(sheet.back) + R"(,"parameters":)" + config.parameters + '}';
                separator = ",";
            }
            return job + "]}";
        }

        void AddParameters(std::vector<std::string>& arguments, const Config& config)
        {
            for (const auto& [key, text] : config.parameterText)
            {
                arguments.insert(arguments.end(), {"--param", key + '=' + text});
            }
        }

        void AddSurface(std::vector<std::string>& arguments, const char* option, const Surface& surface)
        {
            for (const auto& [ink, file] : surface)
            {
                if (ink.find('=') != std::string::npos)
                {
                    throw Host::Failure(
                        file +
                        ": of names that are not UTF-8, that of an ink cannot hold a \"=\"; another name is wanted");
                }
                arguments.insert(arguments.end(), {option, ink + '=' + file});
            }
        }

        std::vector<std::string> ArgumentsOf(const Order& order, const Sheets& sheets, const Config& config)
        {
            std::vector<std::string> arguments = {"--job", order.job};
            if (config.resolution != "auto")
            {
                arguments.insert(arguments.end(), {"--resolution", config.resolution});
            }
            for (const auto& [name, sheet] : sheets)
            {
                arguments.insert(arguments.end(), {"--sheet", name});
                AddSurface(arguments, "--front", sheet.front);
                AddSurface(arguments, "--back", sheet.back);
                AddParameters(arguments, config);
            }
            return arguments;
        }

        std::vector<std::string> PdfArgumentsOf(const Order& order, const Config& config)
        {
            std::vector<std::string> arguments = {config.in + '/' + order.sources.front().name, "--job", order.job};
            // A page has no resolution of its own that could be kept.
            if (config.resolution != "auto" && config.resolution != "keep")
            {
                arguments.insert(arguments.end(), {"--resolution", config.resolution});
            }
            AddParameters(arguments, config);
            return arguments;
        }
    }

    JobDescription Describe(const Order& order, const Config& config)
    {
        switch (order.kind)
        {
        case JobKind::JobFile:
            return {"tiff2ppf", {config.in + '/' + order.sources.front().name}, {}};
        case JobKind::Pdf:
            return {"pdf2ppf", PdfArgumentsOf(order, config), {}};
        case JobKind::Set:
            break;
        }
        const Sheets sheets = SheetsOf(order, config.names);
        if (AreNamesUtf8(order))
        {
            return {"tiff2ppf", {"-"}, JobFileOf(order, sheets, config)};
        }
        return {"tiff2ppf", ArgumentsOf(order, sheets, config), {}};
    }
}
