#include "rasterfeed/ImageLines.h"

#include <utility>

namespace RasterFeed
{
    ImageLines::ImageLines(RowOrder imageRows, const SeparationForm& form, bool isMirrored)
        : rows(std::move(imageRows))
        , expansion(form.bits, form.inverted, isMirrored, form.width)
    {
        if (!expansion.WorksInPlace())
        {
            packedRow.reset(new unsigned char[static_cast<std::size_t>(form.RowBytes())]);
        }
    }

    void ImageLines::Next(unsigned char* line)
    {
        expansion.Expand(rows.Next(packedRow ? packedRow.get() : line), line);
    }
}
