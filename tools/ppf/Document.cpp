#include "ppf/Document.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "ppf/Keywords.h"
#include "ppf/Scanner.h"

namespace ppf
{
    std::string_view NameOf(Side side)
    {
        return side == Side::front ? "front" : "back";
    }

    std::optional<Resolution> Preview::UprightResolution() const
    {
        return resolution && Lie().transposed ? Resolution{resolution->y, resolution->x} : resolution;
    }

    std::optional<std::string_view> Sheet::Find(std::string_view key) const
    {
        const auto found =
            std::find_if(entries.rbegin(), entries.rend(), [&](const Entry& entry) { return entry.key == key; });
        return found == entries.rend() ? std::nullopt : std::optional<std::string_view>(found->value);
    }

    std::string Sheet::JobName() const
    {
        return DecodedName(Find(key::jobName).value_or(""));
    }

    std::string Sheet::SheetName() const
    {
        return DecodedName(Find(key::sheetName).value_or(""));
    }

    std::string_view Sheet::Extent() const
    {
        std::string_view text = Find(key::extent).value_or("");
        if (text.size() >= 2 && text.front() == '[' && text.back() == ']')
        {
            text = text.substr(1, text.size() - 2);
            while (!text.empty() && IsWhiteSpace(text.front()))
            {
                text.remove_prefix(1);
            }
            while (!text.empty() && IsWhiteSpace(text.back()))
            {
                text.remove_suffix(1);
            }
        }
        return text;
    }

    std::vector<Entry> Sheet::Parameters() const
    {
        constexpr std::array<std::string_view, 6> others = {key::jobName,         key::sheetName, key::extent,
                                                            key::separationNames, key::filmCurve, key::plateCurve};
        std::vector<Entry> parameters;
        std::copy_if(
            entries.begin(), entries.end(), std::back_inserter(parameters),
            [&](const Entry& entry) { return std::find(others.begin(), others.end(), entry.key) == others.end(); });
        return parameters;
    }

    std::string DecodedName(std::string_view value)
    {
        const std::vector<Token> tokens = TokensOf(value, 1);
        if (tokens.size() == 1 && tokens[0].kind == TokenKind::string)
        {
            return StringOf(tokens[0].text).value_or(std::string(value));
        }
        if (tokens.size() == 1 && tokens[0].kind == TokenKind::literalName)
        {
            return std::string(tokens[0].text.substr(1));
        }
        return std::string(value);
    }
}
