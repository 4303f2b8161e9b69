// Turns are made of two moves: a quarter counterclockwise, and top to bottom.
#include "tests/layers/rasterfeed/PlainView.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>

namespace RasterFeedTest
{
    namespace
    {
        __extension__ typedef unsigned __int128 Wide;

        PlainImage QuarterCounterclockwise(const PlainImage& image)
        {
            PlainImage turned = {{}, image.down, image.across};
            for (std::size_t x = image.lines[0].size(); x-- > 0;)
            {
                std::string line;
                for (const std::string& column : image.lines)
                {
                    line += column[x];
                }
                turned.lines.push_back(line);
            }
            return turned;
        }

        PlainImage TurnedBy(PlainImage image, int quarters, bool isMirrored)
        {
            for (int i = 0; i < quarters; ++i)
            {
                image = QuarterCounterclockwise(image);
            }
            if (isMirrored)
            {
                std::reverse(image.lines.begin(), image.lines.end());
            }
            return image;
        }

        /// Edge i of cells of `pixelsPerCell`, in 1/65536 of a pixel.
        std::uint64_t Edge(std::size_t i, double pixelsPerCell)
        {
            return static_cast<std::uint64_t>(std::floor(static_cast<double>(i) * pixelsPerCell * 65536 + 0.5));
        }

        std::size_t Cells(std::size_t pixels, double pixelsPerCell)
        {
            const double cells = std::floor(static_cast<double>(pixels) / pixelsPerCell + 0.5);
            return static_cast<std::size_t>(std::max(1.0, cells));
        }

        /// The part of pixel `i` that lies between two edges.
        std::uint64_t Part(std::size_t i, std::uint64_t begin, std::uint64_t end)
        {
            const std::uint64_t from = std::max<std::uint64_t>(i * 65536, begin);
            const std::uint64_t to = std::min<std::uint64_t>((i + 1) * 65536, end);
            return to > from ? to - from : 0;
        }
    }

    PlainImage StoredImage(const TestSupport::TiffForm& form, const TestSupport::SampleRule& rule)
    {
        PlainImage image = {
            std::vector<std::string>(form.height, std::string(form.width, '\0')), form.resolution,
            form.yResolution != 0 ? form.yResolution : form.resolution};
        for (std::uint32_t y = 0; y < form.height; ++y)
        {
            for (std::uint32_t x = 0; x < form.width; ++x)
            {
                // Its part of the depth's range, in 255ths.
                const auto byte = static_cast<int>(std::lround(255.0 * rule(x, y) / ((1u << form.bits) - 1)));
                image.lines[y][x] = static_cast<char>(form.photometric == PHOTOMETRIC_MINISBLACK ? byte : 255 - byte);
            }
        }
        return image;
    }

    PlainImage Upright(PlainImage stored, int orientation)
    {
        // Orientations 1 to 8: turned by so many quarters, and then mirrored top to bottom.
        constexpr int Quarters[] = {0, 2, 2, 0, 1, 3, 3, 1};
        constexpr bool IsMirrored[] = {false, true, false, true, true, false, true, false};
        const int place = std::max(orientation, 1) - 1; // without the tag it is 1
        return TurnedBy(std::move(stored), Quarters[place], IsMirrored[place]);
    }

    PlainImage Turned(PlainImage upright, RasterFeedOrientation orientation)
    {
        const int number = static_cast<int>(orientation);
        return TurnedBy(std::move(upright), number % 4, number >= 4);
    }

    PlainImage Reduced(const PlainImage& image, double resolution)
    {
        const double cx = image.across / resolution;
        const double cy = image.down / resolution;
        const std::size_t width = image.lines[0].size();
        const std::size_t height = image.lines.size();
        PlainImage reduced = {
            std::vector<std::string>(Cells(height, cy), std::string(Cells(width, cx), '\0')), resolution, resolution};
        for (std::size_t j = 0; j < reduced.lines.size(); ++j)
        {
            const std::uint64_t top = Edge(j, cy);
            const std::uint64_t bottom = Edge(j + 1, cy);
            for (std::size_t i = 0; i < reduced.lines[j].size(); ++i)
            {
                const std::uint64_t left = Edge(i, cx);
                const std::uint64_t right = Edge(i + 1, cx);
                const Wide area = Wide{right - left} * (bottom - top);
                Wide rest = area; // not covered by the image yet
                Wide sum = 0;
                for (std::size_t y = top / 65536; y < height && y * 65536 < bottom; ++y)
                {
                    for (std::size_t x = left / 65536; x < width && x * 65536 < right; ++x)
                    {
                        const Wide part = Wide{Part(x, left, right)} * Part(y, top, bottom);
                        sum += part * static_cast<unsigned char>(image.lines[y][x]);
                        rest -= part;
                    }
                }
                sum += rest * 255;
                reduced.lines[j][i] = static_cast<char>((2 * sum + area) / (2 * area));
            }
        }
        return reduced;
    }
}
