// The document sheet by sheet, so that no more than one is in memory as JSON.
#include "ppfinfo/JsonOutput.h"

#include "ppfinfo/InkMeasure.h"
#include "ppfinfo/Text.h"

#include <nlohmann/json.hpp>

#include <cmath>
#include <string>

namespace PpfInfo
{
    namespace
    {
        using Json = nlohmann::ordered_json;

        /// Whole numbers without a point.
        Json NumberOf(double value)
        {
            constexpr double GreatestExact = 9007199254740992.0;
            if (value == std::floor(value) && std::abs(value) <= GreatestExact)
            {
                return static_cast<std::int64_t>(value);
            }
            return value;
        }

        /// Entry by entry: a directory has as many as there are sheets.
        void WriteDirectory(const Ppf::Document& document, std::ostream& out)
        {
            const char* separator = "";
            for (const Ppf::DirectoryEntry& entry : document.directory)
            {
                const Json json = {
                    {"offset", entry.offset}, {"length", entry.length}, {"sheetName", ToUtf8(entry.sheetName)}};
                out << separator << json.dump();
                separator = ",";
            }
        }

        class SheetWriter
        {
        public:
            SheetWriter(const Ppf::Document& theDocument, const ZoneChoice& theZones)
                : document(theDocument)
                , zones(theZones)
            {
            }

            Json JsonOf(const Ppf::Sheet& sheet)
            {
                Json parameters = Json::object();
                for (const Ppf::Entry& entry : sheet.Parameters())
                {
                    parameters[ToUtf8(entry.key)] = ToUtf8(entry.value);
                }
                Json surfaces = Json::array();
                for (const Ppf::Surface& surface : sheet.surfaces)
                {
                    surfaces.push_back({{"side", NameOf(surface.side)}, {"separations", SeparationsOf(surface)}});
                }
                return {
                    {"offset", sheet.offset},
                    {"length", sheet.length},
                    {"jobName", ToUtf8(sheet.JobName())},
                    {"sheetName", ToUtf8(sheet.SheetName())},
                    {"extent", ToUtf8(sheet.Extent())},
                    {"parameters", std::move(parameters)},
                    {"surfaces", std::move(surfaces)}};
            }

            const std::optional<Ppf::Finding>& Fault() const { return fault; }

        private:
            Json SeparationsOf(const Ppf::Surface& surface)
            {
                Json separations = Json::array();
                for (const Ppf::Preview& preview : surface.previews)
                {
                    const InkMeasure measure = MeasureInks(document, preview);
                    KeepFirst(fault, measure.fault);
                    for (unsigned i = 0; i < preview.components; ++i)
                    {
                        const Ppf::InkColumns* ink = measure.inks.empty() ? nullptr : &measure.inks[i];
                        separations.push_back(SeparationOf(preview, preview.inks[i], ink));
                    }
                }
                return separations;
            }

            Json SeparationOf(const Ppf::Preview& preview, const std::string& name, const Ppf::InkColumns* ink)
            {
                Json resolution = nullptr;
                if (preview.resolution)
                {
                    resolution = {NumberOf(preview.resolution->x), NumberOf(preview.resolution->y)};
                }
                Json separation = {
                    {"name", ToUtf8(name)},
                    {"width", preview.width},
                    {"height", preview.height},
                    {"resolution", std::move(resolution)},
                    {"compression", ToUtf8(preview.compressionName)},
                    {"encoding", ToUtf8(preview.encodingName)},
                    {"dataBytes", preview.data.size()},
                    {"coverage", nullptr}};
                if (ink != nullptr)
                {
                    separation["coverage"] = ink->Coverage();
                }
                if (zones.IsGiven())
                {
                    separation["zones"] =
                        ink == nullptr ? std::vector<double>() : ink->Zones(ZoneEdges(preview, zones, fault));
                }
                return separation;
            }

            const Ppf::Document& document;
            const ZoneChoice& zones;
            std::optional<Ppf::Finding> fault;
        };

        /// Text of a value that stands two levels deep.
        std::string Indented(const Json& json)
        {
            std::string text;
            for (const char c : json.dump(2))
            {
                text += c;
                text += c == '\n' ? "    " : "";
            }
            return text;
        }
    }

    std::optional<Ppf::Finding> WriteJson(const Ppf::Document& document, const ZoneChoice& zones, std::ostream& out)
    {
        SheetWriter writer(document, zones);
        out << "{\n  \"version\": " << Json(ToUtf8(document.version)).dump() << ",\n  \"directory\": [";
        WriteDirectory(document, out);
        out << "],\n  \"sheets\": [";
        const char* separator = "";
        for (const Ppf::Sheet& sheet : document.sheets)
        {
            out << separator << "\n    " << Indented(writer.JsonOf(sheet));
            separator = ",";
        }
        out << (document.sheets.empty() ? "]" : "\n  ]") << "\n}\n";
        return writer.Fault();
    }
}
