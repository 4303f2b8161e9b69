#include "ppfinfo/JsonOutput.h"

#include "ppfinfo/JsonWriter.h"
#include "ppfinfo/MeasuredPreview.h"
#include "ppfinfo/Text.h"

#include <cmath>
#include <string>
#include <unordered_map>
#include <vector>

namespace PpfInfo
{
    namespace
    {
        class DocumentWriter
        {
        public:
            DocumentWriter(const Ppf::Document& theDocument, const ZoneChoice& theZones, std::ostream& out)
                : document(theDocument)
                , zones(theZones)
                , json(out)
            {
            }

            void Write()
            {
                json.BeginObject();
                json.Text("version", document.version);
                json.Name("directory");
                json.BeginArray();
                for (const Ppf::DirectoryEntry& entry : document.directory)
                {
                    json.BeginObject();
                    json.Whole("offset", entry.offset);
                    json.Whole("length", entry.length);
                    json.Text("sheetName", entry.sheetName);
                    json.EndObject();
                }
                json.EndArray();
                json.Name("sheets");
                json.BeginArray();
                for (const Ppf::Sheet& sheet : document.sheets)
                {
                    WriteSheet(sheet);
                }
                json.EndArray();
                json.EndObject();
            }

            const std::optional<Ppf::Finding>& FirstFinding() const { return firstFinding; }

        private:
            void WriteSheet(const Ppf::Sheet& sheet)
            {
                json.BeginObject();
                json.Whole("offset", sheet.offset);
                json.Whole("length", sheet.length);
                json.Text("jobName", sheet.JobName());
                json.Text("sheetName", sheet.SheetName());
                json.Text("extent", sheet.Extent());
                WriteParameters(sheet);
                json.Name("surfaces");
                json.BeginArray();
                for (const Ppf::Surface& surface : sheet.surfaces)
                {
                    WriteSurface(surface);
                }
                json.EndArray();
                json.EndObject();
            }

            /// The last definition of a key counts, at the place of the first.
            void WriteParameters(const Ppf::Sheet& sheet)
            {
                std::vector<Ppf::Entry> parameters;
                std::unordered_map<std::string, std::size_t> places;
                for (const Ppf::Entry& entry : sheet.Parameters())
                {
                    const auto [place, isNew] = places.emplace(ToUtf8(entry.key), parameters.size());
                    if (isNew)
                    {
                        parameters.push_back(entry);
                    }
                    parameters[place->second].value = entry.value;
                }
                json.Name("parameters");
                json.BeginObject();
                for (const Ppf::Entry& entry : parameters)
                {
                    json.Text(entry.key, entry.value);
                }
                json.EndObject();
            }

            void WriteSurface(const Ppf::Surface& surface)
            {
                json.BeginObject();
                json.Text("side", NameOf(surface.side));
                json.Name("separations");
                json.BeginArray();
                for (const Ppf::Preview& preview : surface.previews)
                {
                    const MeasuredPreview measured = MeasurePreview(document, preview, zones);
                    KeepFirst(firstFinding, measured.findings);
                    for (unsigned i = 0; i < preview.components; ++i)
                    {
                        WriteSeparation(preview, preview.inks[i], measured.inks.empty() ? nullptr : &measured.inks[i]);
                    }
                }
                json.EndArray();
                json.EndObject();
            }

            void WriteSeparation(const Ppf::Preview& preview, const std::string& name, const MeasuredInk* ink)
            {
                json.BeginObject();
                json.Text("name", name);
                json.Whole("width", preview.width);
                json.Whole("height", preview.height);
                json.Name("resolution");
                WriteResolution(preview.resolution);
                json.Text("compression", preview.compressionName);
                json.Text("encoding", preview.encodingName);
                json.Whole("dataBytes", preview.data.size());
                json.Name("coverage");
                ink == nullptr ? json.Null() : json.Number(ink->coverage);
                if (zones.IsGiven())
                {
                    json.Name("zones");
                    json.BeginArray();
                    for (const double zone : ink == nullptr ? std::vector<double>() : ink->zones)
                    {
                        json.Number(zone);
                    }
                    json.EndArray();
                }
                json.EndObject();
            }

            void WriteResolution(const std::optional<Ppf::Resolution>& resolution)
            {
                if (!resolution)
                {
                    json.Null();
                    return;
                }
                json.BeginArray();
                for (const double number : {resolution->x, resolution->y})
                {
                    constexpr double GreatestExact = 9007199254740992.0;
                    const bool isWhole = number == std::floor(number) && number >= 0 && number <= GreatestExact;
                    isWhole ? json.Whole(static_cast<std::uint64_t>(number)) : json.Number(number);
                }
                json.EndArray();
            }

            const Ppf::Document& document;
            const ZoneChoice& zones;
            JsonWriter json;
            std::optional<Ppf::Finding> firstFinding;
        };
    }

    std::optional<Ppf::Finding> WriteJson(const Ppf::Document& document, const ZoneChoice& zones, std::ostream& out)
    {
        DocumentWriter writer(document, zones, out);
        writer.Write();
        return writer.FirstFinding();
    }
}
