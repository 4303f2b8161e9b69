// Which pages of a file are wanted, as `--pages 1-4,7` says it. Ranges stay ranges, so that a list costs no more than its
// text however far it reaches.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace Pdf2Ppf
{
    class PageList
    {
    public:
        /// All pages.
        PageList() = default;

        /// The pages of `text`: numbers from 1 and ranges of them, with commas between, in any order. Throws
        /// Host::UsageError.
        explicit PageList(const std::string& text);

        bool IsAll() const { return ranges.empty(); }
        bool Has(std::uint64_t page) const;

        /// Number of the page that is the `index`-th (from 0) of those wanted; 0 if there are fewer.
        std::uint64_t At(std::uint64_t index) const;

        /// How many pages are wanted; 0 for all.
        std::uint64_t Size() const;

        /// `1-4,7`: rising, without repetition; empty for all.
        std::string Text() const;

    private:
        struct Range
        {
            std::uint64_t first;
            std::uint64_t last; ///< the range includes it
        };

        std::vector<Range> ranges; ///< rising, with a gap between any two
    };
}
