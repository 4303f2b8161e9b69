#include "ppf/Document.h"

#include <algorithm>

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
