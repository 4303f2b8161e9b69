#include "ppfwatch/NamePattern.h"

#include "host/Failure.h"
#include "host/Text.h"

#include <algorithm>

#include <strings.h>

namespace PpfWatch
{
    namespace
    {
        constexpr std::array<const char*, 4> FieldNames = {"job", "sheet", "side", "ink"};
        constexpr std::array<std::string_view, 4> Sides = {"front", "back", "f", "b"};

        /// A file's name has 255 bytes at most; what is added to a job's is ".ppf" and, for a folder, "-" and a number.
        constexpr std::size_t MaxJobNameBytes = 240;

        bool EndsWith(std::string_view name, std::string_view end)
        {
            return name.size() >= end.size() && name.substr(name.size() - end.size()) == end;
        }
    }

    NamePattern::NamePattern(const std::string& pattern)
    {
        for (std::size_t next = 0; next < pattern.size();)
        {
            const std::size_t brace = pattern.find_first_of("{}", next);
            if (brace != next)
            {
                const std::string literal = pattern.substr(next, brace == std::string::npos ? brace : brace - next);
                if (literal.find('/') != std::string::npos)
                {
                    throw Host::UsageError("a file's name holds no \"/\"");
                }
                if (!parts.empty())
                {
                    ends += literal.front();
                }
                parts.push_back({std::nullopt, literal});
                next += literal.size();
                continue;
            }
            const std::size_t end = pattern.find_first_of("{}", brace + 1);
            if (pattern[brace] != '{' || end == std::string::npos || pattern[end] != '}')
            {
                throw Host::UsageError("braces stand around a field's name: {job}, {sheet}, {side}, {ink}");
            }
            AddField(pattern.substr(brace + 1, end - brace - 1));
            next = end + 1;
        }
        for (const Field needed : {Field::Job, Field::Ink})
        {
            if (std::none_of(parts.begin(), parts.end(), [&](const Part& part) { return part.field == needed; }))
            {
                throw Host::UsageError(
                    std::string("{") + FieldNames[static_cast<std::size_t>(needed)] + "} is missing");
            }
        }
    }

    void NamePattern::AddField(const std::string& name)
    {
        const auto found = std::find(FieldNames.begin(), FieldNames.end(), name);
        if (found == FieldNames.end())
        {
            throw Host::UsageError("there is no field {" + name + "}; known are {job}, {sheet}, {side}, {ink}");
        }
        const auto field = static_cast<Field>(found - FieldNames.begin());
        if (std::any_of(parts.begin(), parts.end(), [&](const Part& part) { return part.field == field; }))
        {
            throw Host::UsageError("{" + name + "} is repeated");
        }
        parts.push_back({field, {}});
    }

    std::optional<SeparationName> NamePattern::Match(const std::string& name) const
    {
        Found found;
        if (!MatchFrom(0, name, found))
        {
            return std::nullopt;
        }
        const auto textOf = [&](Field field) { return std::string(found[static_cast<std::size_t>(field)]); };
        const std::string side = textOf(Field::Side);
        return SeparationName{
            textOf(Field::Job), textOf(Field::Sheet), !side.empty() && (side.front() | 0x20) == 'b',
            textOf(Field::Ink)};
    }

    /// Tries the lengths of each field from the one that is wanted most, and goes back where the rest does not fit.
    bool NamePattern::MatchFrom(std::size_t part, std::string_view rest, Found& found) const
    {
        if (part == parts.size())
        {
            return rest.empty();
        }
        const Part& next = parts[part];
        if (!next.field)
        {
            return rest.substr(0, next.literal.size()) == next.literal &&
                   MatchFrom(part + 1, rest.substr(next.literal.size()), found);
        }
        std::vector<std::size_t> lengths = LengthsOf(*next.field, rest);
        if (next.field == Field::Ink || next.field == Field::Sheet)
        {
            // What stands before the job leaves it as much as can be.
            const auto isJob = [](const Part& later) { return later.field == Field::Job; };
            if (std::any_of(parts.begin() + static_cast<std::ptrdiff_t>(part), parts.end(), isJob))
            {
                std::reverse(lengths.begin(), lengths.end());
            }
        }
        return std::any_of(
            lengths.begin(), lengths.end(),
            [&](std::size_t length)
            {
                found[static_cast<std::size_t>(*next.field)] = rest.substr(0, length);
                return MatchFrom(part + 1, rest.substr(length), found);
            });
    }

    std::vector<std::size_t> NamePattern::LengthsOf(Field field, std::string_view rest) const
    {
        std::vector<std::size_t> lengths;
        if (field == Field::Side)
        {
            for (const std::string_view side : Sides)
            {
                if (rest.size() >= side.size() && strncasecmp(rest.data(), side.data(), side.size()) == 0)
                {
                    lengths.push_back(side.size());
                }
            }
            return lengths;
        }
        const std::size_t most = field == Field::Job ? rest.size() : std::min(rest.find_first_of(ends), rest.size());
        for (std::size_t length = most; length > 0; --length)
        {
            lengths.push_back(length);
        }
        return lengths;
    }

    bool IsLeftAlone(std::string_view name)
    {
        return name.empty() || name.front() == '.' || EndsWith(name, ".part") || EndsWith(name, ".tmp") ||
               EndsWith(name, "~") || name == "error.txt";
    }

    bool IsJobName(std::string_view name)
    {
        return !name.empty() && name.front() != '.' && name.size() <= MaxJobNameBytes;
    }
}
