#include "rasterfeed/CellSums.h"

#include "rasterfeed/BilevelSums.h"
#include "rasterfeed/ByteSums.h"
#include "rasterfeed/MeanPixel.h"
#include "rasterfeed/Refusal.h"

#include <string>

namespace RasterFeed
{
    namespace
    {
        // What the sums of one reduction may take: those of rows of 17 million bytes, or of 28 million bits.
        constexpr std::uint64_t MostMemory = 256ull * 1024 * 1024;

        template <class Sum>
        std::unique_ptr<CellSums>
        Make(const SeparationForm& form, const std::vector<unsigned>& samples, const std::vector<std::int64_t>& edges)
        {
            if (form.bits == 1)
            {
                return std::make_unique<BilevelSums<Sum>>(form, samples, edges);
            }
            return std::make_unique<ByteSums<Sum>>(form, samples, edges);
        }
    }

    std::unique_ptr<CellSums> MakeCellSums(
        const SeparationForm& form, const std::vector<unsigned>& samples, const CellEdges& columns,
        std::uint64_t greatestHeight)
    {
        // At the most of digits and the widest sums; see the members of the two classes.
        const std::uint64_t memory = std::uint64_t{form.width} * form.samples * (form.bits == 1 ? 9 : 15) +
                                     std::uint64_t{columns.Cells()} * samples.size() * 48;
        if (memory > MostMemory)
        {
            throw Refusal(
                "rows of " + std::to_string(form.width) +
                (form.samples == 1 ? "" : " x " + std::to_string(form.samples)) +
                " pixels to be reduced, which takes " + std::to_string(memory) + " bytes of memory; up to " +
                std::to_string(MostMemory) + " are accepted");
        }
        std::vector<std::int64_t> edges;
        edges.reserve(std::size_t{columns.Cells()} + 1);
        for (std::size_t i = 0; i <= columns.Cells(); ++i)
        {
            edges.push_back(columns[i]);
        }
        if (WideSum{columns.GreatestCell()} * greatestHeight <= LargestArea<std::uint64_t>)
        {
            return Make<std::uint64_t>(form, samples, edges);
        }
        return Make<WideSum>(form, samples, edges);
    }
}
