#include "ppf/Expectation.h"

#include <algorithm>

namespace Ppf
{
    namespace
    {
        std::string SizeText(std::uint64_t width, std::uint64_t height)
        {
            return std::to_string(width) + " x " + std::to_string(height) + " pixels";
        }

        class Comparison
        {
        public:
            void CompareSheet(const Sheet& sheet, const ExpectedSheet& expected)
            {
                CompareName(sheet.offset, "job", sheet.JobName(), expected.jobName);
                CompareName(sheet.offset, "sheet", sheet.SheetName(), expected.sheetName);
                CompareCount(sheet.offset, "sheet", "sides", sheet.surfaces.size(), expected.sides.size());
                const std::size_t count = std::min(sheet.surfaces.size(), expected.sides.size());
                for (std::size_t i = 0; i < count; ++i)
                {
                    CompareSide(sheet.surfaces[i], expected.sides[i]);
                }
            }

            void CompareCount(
                std::uint64_t offset, const std::string& what, const std::string& parts, std::size_t count,
                std::size_t expected)
            {
                if (count != expected)
                {
                    Add(offset, what + " has " + std::to_string(count) + " " + parts + " in place of " +
                                    std::to_string(expected));
                }
            }

            std::vector<Finding> findings;

        private:
            void CompareSide(const Surface& surface, const ExpectedSide& expected)
            {
                const std::string side(NameOf(surface.side));
                CompareName(surface.offset, "side", side, std::string(NameOf(expected.side)));
                CompareCount(surface.offset, side, "separations", surface.previews.size(), expected.separations.size());
                const std::size_t count = std::min(surface.previews.size(), expected.separations.size());
                for (std::size_t i = 0; i < count; ++i)
                {
                    const Preview& preview = surface.previews[i];
                    const ExpectedSeparation& separation = expected.separations[i];
                    CompareName(preview.offset, "separation", preview.inks.front(), separation.name);
                    const bool hasWidth = separation.width == 0 || preview.width == separation.width;
                    const bool hasHeight = separation.height == 0 || preview.height == separation.height;
                    if (!hasWidth || !hasHeight)
                    {
                        Add(preview.offset, "separation \"" + Shown(separation.name) + "\" has " +
                                                SizeText(preview.width, preview.height) + " in place of " +
                                                SizeText(separation.width, separation.height));
                    }
                }
            }

            void CompareName(
                std::uint64_t offset, const std::string& what, const std::string& name, const std::string& expected)
            {
                if (name != expected)
                {
                    Add(offset, what + " is \"" + Shown(name) + "\" in place of \"" + Shown(expected) + "\"");
                }
            }

            void Add(std::uint64_t offset, const std::string& text) { findings.push_back({offset, text}); }
        };
    }

    std::vector<Finding> CheckAgainst(const Document& document, const std::vector<ExpectedSheet>& sheets)
    {
        Comparison comparison;
        const std::size_t count = std::min(document.sheets.size(), sheets.size());
        for (std::size_t i = 0; i < count; ++i)
        {
            comparison.CompareSheet(document.sheets[i], sheets[i]);
        }
        comparison.CompareCount(document.end, "file", "sheets", document.sheets.size(), sheets.size());
        return std::move(comparison.findings);
    }
}
