#include "ppf/InkNames.h"

#include "ppf/Keywords.h"
#include "ppf/Scanner.h"

#include <array>
#include <utility>

namespace Ppf
{
    namespace
    {
        std::optional<std::string_view> FindNames(const std::vector<Entry>& entries)
        {
            for (auto entry = entries.rbegin(); entry != entries.rend(); ++entry)
            {
                if (entry->key == Key::SeparationNames)
                {
                    return entry->value;
                }
            }
            return std::nullopt;
        }

        /// Throws FormatError if the value is not an array of so many names at most.
        std::vector<std::string> NamesOf(const Document& document, std::string_view value, std::size_t most)
        {
            if (const Finding* const remark = document.WhyLeftOut(value))
            {
                throw FormatError(remark->offset, remark->text);
            }
            const std::vector<Token> tokens = TokensOf(value, most + 2);
            if (tokens.empty() && !value.empty())
            {
                throw FormatError(
                    document.OffsetOf(value),
                    "value of /CIP3AdmSeparationNames has more than " + std::to_string(most) + " names");
            }
            if (tokens.size() < 2 || tokens.front().kind != TokenKind::Open || tokens.back().kind != TokenKind::Close)
            {
                throw FormatError(
                    document.OffsetOf(value), "value of /CIP3AdmSeparationNames is not an array of names");
            }
            std::vector<std::string> names;
            names.reserve(tokens.size() - 2);
            for (std::size_t i = 1; i + 1 < tokens.size(); ++i)
            {
                names.push_back(DecodedName(tokens[i].text));
            }
            return names;
        }

        /// Bytes of the list, and of the previews' copies of what a string does not hold in itself.
        std::size_t CostOf(const std::vector<std::string>& names)
        {
            std::size_t cost = names.size() * sizeof(std::string);
            for (const std::string& name : names)
            {
                cost += name.capacity() > std::string().capacity() ? 2 * (name.capacity() + sizeof(std::string)) : 0;
            }
            return cost;
        }

        void NamePreviews(Surface& surface)
        {
            constexpr std::array<std::string_view, 4> ProcessInks = {"Cyan", "Magenta", "Yellow", "Black"};
            const std::vector<std::string>& names = surface.separationNames;
            std::size_t next = 0;
            for (Preview& preview : surface.previews)
            {
                preview.inks.reserve(preview.components);
                for (unsigned i = 0; i < preview.components; ++i, ++next)
                {
                    if (next < names.size())
                    {
                        preview.inks.push_back(names[next]);
                    }
                    else if (preview.components == ProcessInks.size())
                    {
                        preview.inks.emplace_back(ProcessInks[i]);
                    }
                    else
                    {
                        preview.inks.push_back("Separation " + std::to_string(next + 1));
                    }
                }
            }
        }
    }

    void AssignInkNames(Document& document, std::size_t memory, std::size_t mostSeparations)
    {
        for (Sheet& sheet : document.sheets)
        {
            const std::optional<std::string_view> ofSheet = FindNames(sheet.entries);
            for (Surface& surface : sheet.surfaces)
            {
                const std::optional<std::string_view> ofSurface = FindNames(surface.entries);
                const std::optional<std::string_view> value = ofSurface ? ofSurface : ofSheet;
                try
                {
                    if (value)
                    {
                        std::vector<std::string> names;
                        // The text itself counts as well, so that a long list is not read for any number of sides.
                        std::size_t cost = value->size();
                        if (cost <= memory)
                        {
                            names = NamesOf(document, *value, mostSeparations);
                            cost += CostOf(names);
                        }
                        if (cost > memory)
                        {
                            memory = 0;
                            throw FormatError(
                                document.OffsetOf(*value), "file has more separation names than any job can have");
                        }
                        memory -= cost;
                        surface.separationNames = std::move(names);
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
