#include "rasterfeed/ImageLines.h"

#include <algorithm>
#include <utility>

namespace RasterFeed
{
    ImageLines::ImageLines(RowOrder imageRows, const SeparationForm& form, bool fromRight)
        : rows(std::move(imageRows))
        , expansion(form.bits, form.inverted, fromRight && form.samples == 1, std::size_t{form.width} * form.samples)
        , width(form.width)
        , samples(form.samples)
        , sample(form.sample)
        , isMirrored(fromRight)
    {
        if (!expansion.WorksInPlace())
        {
            packedRow.reset(new unsigned char[static_cast<std::size_t>(form.RowBytes())]);
        }
        if (samples != 1)
        {
            allChannels.reset(new unsigned char[std::size_t{width} * samples]);
        }
    }

    void ImageLines::Next(unsigned char* line, std::size_t)
    {
        unsigned char* const bytes = allChannels ? allChannels.get() : line;
        expansion.Expand(rows.Next(packedRow ? packedRow.get() : bytes), bytes);
        if (allChannels)
        {
            PickChannel(line);
        }
    }

    void ImageLines::PickChannel(unsigned char* line) const
    {
        const unsigned char* from = allChannels.get() + sample;
        for (std::uint32_t i = 0; i < width; ++i, from += samples)
        {
            line[i] = *from;
        }
        if (isMirrored)
        {
            std::reverse(line, line + width);
        }
    }
}
