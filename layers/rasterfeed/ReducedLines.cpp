#include "rasterfeed/ReducedLines.h"

#include "rasterfeed/Refusal.h"

#include <algorithm>
#include <utility>

namespace RasterFeed
{
    ReducedLines::ReducedLines(
        RowOrder imageRows, const SeparationForm& form, const std::vector<unsigned>& samples, const CellEdges& columns,
        const CellEdges& lines, bool fromRight)
        : rows(std::move(imageRows))
        , edges(lines)
        , cells(columns.Cells())
        , channels(samples.size())
        , isMirrored(fromRight)
        , sums(MakeCellSums(form, samples, columns, edges.GreatestCell()))
        , space(new unsigned char[static_cast<std::size_t>(form.RowBytes())])
    {
    }

    void ReducedLines::NextRow()
    {
        row = rows.Next(space.get());
    }

    void ReducedLines::Next(unsigned char* line, std::size_t pitch)
    {
        if (done >= edges.Cells())
        {
            throw Refusal("no line is left; as many are read as there are");
        }
        const std::int64_t begin = edges[done];
        const std::int64_t end = edges[done + 1];
        const std::int64_t last = InsideImage(end, rows.Height());
        for (std::int64_t at = InsideImage(begin, rows.Height()); at < last;)
        {
            // The row at this place may be the one that the line before ended in; rows before the first cell are in none.
            const std::int64_t index = at >> EdgeBits;
            while (rows.Taken() <= index)
            {
                NextRow();
            }
            const std::int64_t next = std::min(last, (index + 1) << EdgeBits);
            sums->Add(row, static_cast<std::uint32_t>(next - at));
            at = next;
        }
        sums->Finish(static_cast<std::uint64_t>(end - begin), line, pitch);
        for (std::size_t i = 0; isMirrored && i < channels; ++i)
        {
            std::reverse(line + i * pitch, line + i * pitch + cells);
        }
        ++done;
        // Rows after the last cell count for nothing but damage.
        while (done == edges.Cells() && rows.Taken() < rows.Height())
        {
            NextRow();
        }
    }
}
