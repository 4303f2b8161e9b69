#include "ppf/Document.h"

#include "ppf/Keywords.h"
#include "ppf/Number.h"
#include "ppf/Scanner.h"
#include "ppf/StringLiteral.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace Ppf
{
    namespace
    {
        /// True for a transfer curve that is the straight line from 0 0 to 1 1, which changes nothing.
        bool IsNeutralCurve(const Entry& entry)
        {
            constexpr std::array<double, 4> Straight = {0, 0, 1, 1};
            if (entry.key != Key::FilmCurve && entry.key != Key::PlateCurve)
            {
                return false;
            }
            // The four numbers stand between brackets.
            const std::vector<Token> tokens = TokensOf(entry.value, Straight.size() + 2);
            bool isStraight = tokens.size() == Straight.size() + 2;
            for (std::size_t i = 0; isStraight && i < Straight.size(); ++i)
            {
                isStraight = NumberOf(tokens[i + 1].text) == Straight[i];
            }
            return isStraight;
        }
    }

    std::string_view NameOf(Side side)
    {
        return side == Side::Front ? "front" : "back";
    }

    std::optional<Resolution> Preview::UprightResolution() const
    {
        return resolution && OrientationOnSheet().transposed ? Resolution{resolution->y, resolution->x} : resolution;
    }

    std::optional<std::string_view> Sheet::Find(std::string_view key) const
    {
        const auto found =
            std::find_if(entries.rbegin(), entries.rend(), [&](const Entry& entry) { return entry.key == key; });
        return found == entries.rend() ? std::nullopt : std::optional<std::string_view>(found->value);
    }

    std::string Sheet::JobName() const
    {
        return DecodedName(Find(Key::JobName).value_or(""));
    }

    std::string Sheet::SheetName() const
    {
        return DecodedName(Find(Key::SheetName).value_or(""));
    }

    std::string_view Sheet::Extent() const
    {
        const std::string_view text = Find(Key::Extent).value_or("");
        const bool isArray = text.size() >= 2 && text.front() == '[' && text.back() == ']';
        return isArray ? Trimmed(text.substr(1, text.size() - 2)) : text;
    }

    std::vector<Entry> Sheet::Parameters() const
    {
        std::vector<Entry> parameters;
        std::copy_if(
            entries.begin(), entries.end(), std::back_inserter(parameters),
            [](const Entry& entry)
            {
                const bool isName = entry.key == Key::JobName || entry.key == Key::SheetName;
                return !isName && entry.key != Key::Extent && !IsNeutralCurve(entry);
            });
        return parameters;
    }

    const Finding* Document::WhyLeftOut(std::string_view value) const
    {
        if (!value.empty())
        {
            return nullptr;
        }
        const auto found = std::find_if(
            remarks.begin(), remarks.end(), [&](const Finding& remark) { return remark.offset == OffsetOf(value); });
        return found == remarks.end() ? nullptr : &*found;
    }

    std::string DecodedName(std::string_view value)
    {
        const std::vector<Token> tokens = TokensOf(value, 1);
        if (tokens.size() == 1 && tokens[0].kind == TokenKind::String)
        {
            return StringOf(tokens[0].text).value_or(std::string(value));
        }
        if (tokens.size() == 1 && tokens[0].kind == TokenKind::LiteralName)
        {
            return std::string(tokens[0].text.substr(1));
        }
        return std::string(value);
    }
}
