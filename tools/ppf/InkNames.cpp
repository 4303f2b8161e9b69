#include "ppf/InkNames.h"

#include <array>

#include "ppf/Keywords.h"
#include "ppf/Scanner.h"

namespace ppf
{
    namespace
    {
        /// More inks than this on one surface are no list of separations.
        constexpr std::size_t mostSeparations = 1000;

        std::optional<std::string_view> FindNames(const std::vector<Entry>& entries)
        {
            for (auto entry = entries.rbegin(); entry != entries.rend(); ++entry)
            {
                if (entry->key == key::separationNames)
                {
                    return entry->value;
                }
            }
            return std::nullopt;
        }

        /// Throws FormatError if the value is no array of names.
        std::vector<std::string> NamesOf(const Document& document, std::string_view value)
        {
            const std::vector<Token> tokens = TokensOf(value, mostSeparations + 2);
            if (tokens.size() < 2 || tokens.front().kind != TokenKind::open || tokens.back().kind != TokenKind::close)
            {
                throw FormatError(document.OffsetOf(value), "value of /CIP3AdmSeparationNames is no array of names");
            }
            std::vector<std::string> names;
            for (std::size_t i = 1; i + 1 < tokens.size(); ++i)
            {
                names.push_back(DecodedName(tokens[i].text));
            }
            return names;
        }

        void NamePreviews(Surface& surface)
        {
            constexpr std::array<std::string_view, 4> processInks = {"Cyan", "Magenta", "Yellow", "Black"};
            const std::vector<std::string>& names = surface.separationNames;
            std::size_t next = 0;
            for (Preview& preview : surface.previews)
            {
                for (unsigned i = 0; i < preview.components; ++i, ++next)
                {
                    if (next < names.size())
                    {
                        preview.inks.push_back(names[next]);
                    }
                    else if (preview.components == processInks.size())
                    {
                        preview.inks.emplace_back(processInks[i]);
                    }
                    else
                    {
                        preview.inks.push_back("Separation " + std::to_string(next + 1));
                    }
                }
            }
        }
    }

    void AssignInkNames(Document& document, std::size_t memory)
    {
        for (Sheet& sheet : document.sheets)
        {
            const std::optional<std::string_view> ofSheet = FindNames(sheet.entries);
            for (Surface& surface : sheet.surfaces)
            {
                const std::optional<std::string_view> ofSurface = FindNames(surface.entries);
                const std::optional<std::string_view> value = ofSurface ? ofSurface : ofSheet;
                // Every name has delimiters and is kept twice at most, as a string with some overhead.
                const std::size_t cost = value ? value->size() * sizeof(std::string) : 0;
                try
                {
                    if (cost > memory)
                    {
                        throw FormatError(
                            document.OffsetOf(*value), "file has more separation names than any job can have");
                    }
                    if (value)
                    {
                        memory -= cost;
                        surface.separationNames = NamesOf(document, *value);
                    }
                }
                catch (const FormatError& error)
                {
                    document.damage = document.damage ? document.damage : error.AsFinding();
                }
                NamePreviews(surface);
            }
        }
    }
}
