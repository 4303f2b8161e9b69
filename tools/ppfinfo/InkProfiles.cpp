#include "ppfinfo/InkProfiles.h"

#include "ppfinfo/MeasuredPreview.h"
#include "ppfinfo/Text.h"

#include <algorithm>
#include <map>
#include <utility>

namespace PpfInfo
{
    namespace
    {
        std::string SettingsText(const std::vector<double>& perCents)
        {
            constexpr int Digits = 6;
            std::string text;
            for (const double perCent : perCents)
            {
                text += (text.empty() ? "" : " ") + Fixed(perCent / 100, Digits);
            }
            return text;
        }

        class Reader
        {
        public:
            Reader(const Ppf::Document& theDocument, const ZoneChoice& theChoice)
                : document(theDocument)
                , choice(theChoice)
            {
            }

            InkProfiles Read(NameForm form)
            {
                for (std::size_t i = 0; i < document.sheets.size(); ++i)
                {
                    ReadSheet(i);
                }
                if (result.profiles.empty())
                {
                    throw Ppf::FormatError(document.end, "file has no separation");
                }
                std::stable_sort(
                    result.profiles.begin(), result.profiles.end(),
                    [](const InkProfile& left, const InkProfile& right)
                    { return std::make_pair(left.sheet, left.side) < std::make_pair(right.sheet, right.side); });
                GiveNames(result.sheets, form);
                GiveNames(result.separations, form);
                const std::string job = document.sheets.front().JobName();
                result.job = {job, JobIdOf(job, form)};
                return std::move(result);
            }

        private:
            /// The name and how many of its side before have the same: what separations are told apart by.
            using Key = std::pair<std::string, std::size_t>;

            void ReadSheet(std::size_t position)
            {
                const Ppf::Sheet& sheet = document.sheets[position];
                result.sheets.push_back({sheet.SheetName(), ""});
                std::map<std::pair<Ppf::Side, std::string>, std::size_t> occurrences;
                for (const Ppf::Surface& surface : sheet.surfaces)
                {
                    for (const Ppf::Preview& preview : surface.previews)
                    {
                        const MeasuredPreview measured = Measured(preview);
                        for (std::size_t i = 0; i < measured.inks.size(); ++i)
                        {
                            const std::string& name = preview.inks[i];
                            result.profiles.push_back(
                                {position, surface.side, PlaceOf({name, occurrences[{surface.side, name}]++}),
                                 measured.zones.WidthInInches() * PointsPerInch, SettingsText(measured.inks[i].zones),
                                 measured.zones.Count()});
                        }
                    }
                }
            }

            MeasuredPreview Measured(const Ppf::Preview& preview) const
            {
                MeasuredPreview measured =
                    MeasurePreview(document, preview, choice.IsGiven() ? choice : UsualChoice(preview));
                if (!measured.findings.empty())
                {
                    throw Ppf::FormatError(measured.findings.front().offset, measured.findings.front().text);
                }
                return measured;
            }

            std::size_t PlaceOf(const Key& key)
            {
                const auto [place, isNew] = places.emplace(key, result.separations.size());
                if (isNew)
                {
                    result.separations.push_back({key.first, ""});
                }
                return place->second;
            }

            static void GiveNames(std::vector<DocumentName>& entries, NameForm form)
            {
                std::vector<std::string> names;
                names.reserve(entries.size());
                for (const DocumentName& entry : entries)
                {
                    names.push_back(entry.trueName);
                }
                const std::vector<std::string> distinct = DistinctNames(names, form);
                for (std::size_t i = 0; i < entries.size(); ++i)
                {
                    entries[i].name = distinct[i];
                }
            }

            const Ppf::Document& document;
            const ZoneChoice& choice;
            InkProfiles result;
            std::map<Key, std::size_t> places;
        };
    }

    std::string DocumentName::Description() const
    {
        return ToUtf8(trueName) == name ? "" : XmlText(trueName);
    }

    InkProfiles ReadInkProfiles(const Ppf::Document& document, const ZoneChoice& choice, NameForm form)
    {
        if (document.damage)
        {
            throw Ppf::FormatError(document.damage->offset, document.damage->text);
        }
        return Reader(document, choice).Read(form);
    }
}
