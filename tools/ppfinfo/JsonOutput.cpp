// The document sheet by sheet, so that no more than one is in memory as JSON.
#include "ppfinfo/JsonOutput.h"

#include <cmath>
#include <string>

#include <nlohmann/json.hpp>

#include "ppfinfo/InkMeasure.h"
#include "ppfinfo/Text.h"

namespace ppfinfo
{
    namespace
    {
        using Json = nlohmann::ordered_json;

        /// Whole numbers without a point.
        Json NumberOf(double value)
        {
            constexpr double greatestExact = 9007199254740992.0;
            if (value == std::floor(value) && std::abs(value) <= greatestExact)
            {
                return static_cast<std::int64_t>(value);
            }
            return value;
        }

        /// Entry by entry: a directory has as many as there are sheets.
        void WriteDirectory(const ppf::Document& document, std::ostream& out)
        {
            const char* separator = "";
            for (const ppf::DirectoryEntry& entry : document.directory)
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
            SheetWriter(const ppf::Document& document, const ZoneChoice& zones)
                : m_document(document)
                , m_zones(zones)
            {
            }

            Json JsonOf(const ppf::Sheet& sheet)
            {
                Json parameters = Json::object();
                for (const ppf::Entry& entry : sheet.Parameters())
                {
                    parameters[ToUtf8(entry.key)] = ToUtf8(entry.value);
                }
                Json surfaces = Json::array();
                for (const ppf::Surface& surface : sheet.surfaces)
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

            const std::optional<ppf::Finding>& Fault() const { return m_fault; }

        private:
            Json SeparationsOf(const ppf::Surface& surface)
            {
                Json separations = Json::array();
                for (const ppf::Preview& preview : surface.previews)
                {
                    const InkMeasure measure = MeasureInks(m_document, preview);
                    KeepFirst(m_fault, measure.fault);
                    for (unsigned i = 0; i < preview.components; ++i)
                    {
                        const ppf::InkColumns* ink = measure.inks.empty() ? nullptr : &measure.inks[i];
                        separations.push_back(SeparationOf(preview, preview.inks[i], ink));
                    }
                }
                return separations;
            }

            Json SeparationOf(const ppf::Preview& preview, const std::string& name, const ppf::InkColumns* ink)
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
                if (m_zones.IsGiven())
                {
                    separation["zones"] =
                        ink == nullptr ? std::vector<double>() : ink->Zones(ZoneEdges(preview, m_zones, m_fault));
                }
                return separation;
            }

            const ppf::Document& m_document;
            const ZoneChoice& m_zones;
            std::optional<ppf::Finding> m_fault;
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

    std::optional<ppf::Finding> WriteJson(const ppf::Document& document, const ZoneChoice& zones, std::ostream& out)
    {
        SheetWriter writer(document, zones);
        out << "{\n  \"version\": " << Json(ToUtf8(document.version)).dump() << ",\n  \"directory\": [";
        WriteDirectory(document, out);
        out << "],\n  \"sheets\": [";
        const char* separator = "";
        for (const ppf::Sheet& sheet : document.sheets)
        {
            out << separator << "\n    " << Indented(writer.JsonOf(sheet));
            separator = ",";
        }
        out << (document.sheets.empty() ? "]" : "\n  ]") << "\n}\n";
        return writer.Fault();
    }
}
