#include "rasterfeed/HeldImage.h"

#include "rasterfeed/Refusal.h"

#include <algorithm>
#include <cstring>
#include <utility>
#include <vector>

namespace RasterFeed
{
    namespace
    {
        // Lines that are turned at once, so that what is written goes to whole lines of the processor's cache.
        constexpr std::size_t BandLines = 64;
    }

    HeldImage::HeldImage(
        std::unique_ptr<LineSource> lines, std::uint32_t width, std::uint32_t height, std::size_t channelCount,
        bool asColumns, bool lastFirst)
        : source(std::move(lines))
        , sourceWidth(width)
        , sourceHeight(height)
        , channels(channelCount)
        , isTransposed(asColumns)
        , fromBottom(lastFirst)
        , pixels(new unsigned char[sourceWidth * sourceHeight * channels])
    {
    }

    void HeldImage::ReadAll()
    {
        for (std::size_t y = 0; y < sourceHeight; ++y)
        {
            source->Next(
                pixels.get() + (fromBottom ? sourceHeight - 1 - y : y) * sourceWidth, sourceWidth * sourceHeight);
        }
    }

    void HeldImage::ReadTransposed()
    {
        const std::size_t bandPixels = std::min(BandLines, sourceHeight) * sourceWidth;
        std::vector<unsigned char> band(bandPixels * channels);
        for (std::size_t top = 0; top < sourceHeight; top += BandLines)
        {
            const std::size_t count = std::min(BandLines, sourceHeight - top);
            for (std::size_t i = 0; i < count; ++i)
            {
                source->Next(&band[(fromBottom ? count - 1 - i : i) * sourceWidth], bandPixels);
            }
            const std::size_t column = fromBottom ? sourceHeight - top - count : top;
            for (std::size_t x = 0; x < sourceWidth * channels; ++x)
            {
                const unsigned char* const from = &band[x / sourceWidth * bandPixels + x % sourceWidth];
                unsigned char* const to = pixels.get() + x * sourceHeight + column;
                for (std::size_t i = 0; i < count; ++i)
                {
                    to[i] = from[i * sourceWidth];
                }
            }
        }
    }

    void HeldImage::Next(unsigned char* line, std::size_t)
    {
        if (source)
        {
            isTransposed ? ReadTransposed() : ReadAll();
            source.reset();
        }
        const std::size_t all = sourceWidth * sourceHeight * channels;
        if (delivered >= all)
        {
            throw Refusal("no line is left; as many are read as there are");
        }
        const std::size_t width = isTransposed ? sourceHeight : sourceWidth;
        std::memcpy(line, pixels.get() + delivered, width);
        delivered += width;
    }
}
