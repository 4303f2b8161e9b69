#include "rasterfeed/CellSums.h"

#include "rasterfeed/BilevelSums.h"
#include "rasterfeed/ByteSums.h"
#include "rasterfeed/MeanPixel.h"

#include <algorithm>

namespace RasterFeed
{
    namespace
    {
        template <class Sum>
        std::unique_ptr<CellSums> Make(const SeparationForm& form, const std::vector<std::int64_t>& edges)
        {
            if (form.bits == 1)
            {
                return std::make_unique<BilevelSums<Sum>>(form, edges);
            }
            return std::make_unique<ByteSums<Sum>>(form, edges);
        }
    }

    std::unique_ptr<CellSums>
    MakeCellSums(const SeparationForm& form, const std::vector<std::int64_t>& edges, std::uint64_t greatestHeight)
    {
        std::int64_t greatestWidth = 0;
        for (std::size_t i = 1; i < edges.size(); ++i)
        {
            greatestWidth = std::max(greatestWidth, edges[i] - edges[i - 1]);
        }
        const WideSum greatestArea = WideSum{static_cast<std::uint64_t>(greatestWidth)} * greatestHeight;
        if (greatestArea <= LargestArea<std::uint64_t>)
        {
            return Make<std::uint64_t>(form, edges);
        }
        return Make<WideSum>(form, edges);
    }

    std::uint64_t CellSumsMemory(const SeparationForm& form, std::uint64_t edges)
    {
        // At the most of digits and the widest sums; see the members of the two classes.
        return std::uint64_t{form.width} * (form.bits == 1 ? 9 : 15) + edges * 48;
    }
}
