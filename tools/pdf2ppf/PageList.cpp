#include "pdf2ppf/PageList.h"

#include "host/Failure.h"
#include "host/Text.h"

#include <algorithm>
#include <charconv>
#include <string_view>
#include <system_error>

namespace Pdf2Ppf
{
    namespace
    {
        /// Ghostscript reads page numbers into a C int.
        constexpr std::uint64_t MostPages = 2147483647;

        [[noreturn]] void Refuse(std::string_view list)
        {
            throw Host::UsageError(
                "--pages " + Host::Quoted(list) + ": page numbers from 1 and ranges, as 1-4,7, are wanted");
        }

        std::uint64_t NumberOf(std::string_view text, std::string_view list)
        {
            std::uint64_t number = 0;
            const auto [end, problem] = std::from_chars(text.data(), text.data() + text.size(), number);
            if (problem != std::errc() || end != text.data() + text.size() || number < 1 || number > MostPages)
            {
                Refuse(list);
            }
            return number;
        }
    }

    PageList::PageList(const std::string& text)
    {
        std::string_view rest = text;
        for (bool isLast = false; !isLast;)
        {
            const auto comma = rest.find(',');
            const std::string_view part = rest.substr(0, comma);
            isLast = comma == std::string_view::npos;
            rest.remove_prefix(isLast ? rest.size() : comma + 1);

            const auto dash = part.find('-');
            const std::uint64_t first = NumberOf(part.substr(0, dash), text);
            const std::uint64_t last = dash == std::string_view::npos ? first : NumberOf(part.substr(dash + 1), text);
            if (last < first)
            {
                Refuse(text);
            }
            ranges.push_back({first, last});
        }

        std::sort(ranges.begin(), ranges.end(), [](const Range& a, const Range& b) { return a.first < b.first; });
        std::size_t kept = 0;
        for (const Range& range : ranges)
        {
            if (kept > 0 && range.first <= ranges[kept - 1].last + 1)
            {
                ranges[kept - 1].last = std::max(ranges[kept - 1].last, range.last);
            }
            else
            {
                ranges[kept++] = range;
            }
        }
        ranges.resize(kept);
    }

    bool PageList::Has(std::uint64_t page) const
    {
        return IsAll() || std::any_of(
                              ranges.begin(), ranges.end(),
                              [page](const Range& range) { return range.first <= page && page <= range.last; });
    }

    std::uint64_t PageList::At(std::uint64_t index) const
    {
        if (IsAll())
        {
            return index + 1;
        }
        for (const Range& range : ranges)
        {
            const std::uint64_t size = range.last - range.first + 1;
            if (index < size)
            {
                return range.first + index;
            }
            index -= size;
        }
        return 0;
    }

    std::uint64_t PageList::Size() const
    {
        std::uint64_t size = 0;
        for (const Range& range : ranges)
        {
            size += range.last - range.first + 1;
        }
        return size;
    }

    std::string PageList::Text() const
    {
        std::string text;
        for (const Range& range : ranges)
        {
            text += (text.empty() ? "" : ",") + std::to_string(range.first);
            if (range.last > range.first)
            {
                text += '-' + std::to_string(range.last);
            }
        }
        return text;
    }
}
