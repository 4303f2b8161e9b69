#include "bench/pages/Pages.h"

#include <algorithm>
#include <random>

namespace Pages
{
    namespace
    {
        using Random = std::minstd_rand;

        // Paper with lines of text: strokes of 2 to 6 pixels with gaps of 3 to 40, and blocks of tint between them.
        void FlatLine(std::uint8_t* line, std::size_t width, std::size_t y, Random& random)
        {
            std::fill(line, line + width, std::uint8_t{255});
            const bool textBand = y / 24 % 3 != 2;
            if (!textBand)
            {
                const std::size_t patch = width / 8 + 1;
                for (std::size_t x = 0; x < width; ++x)
                {
                    line[x] = static_cast<std::uint8_t>(255 - x / patch * 28);
                }
                return;
            }
            for (std::size_t x = random() % 60; x < width;)
            {
                const std::size_t stroke = std::min<std::size_t>(2 + random() % 5, width - x);
                std::fill_n(line + x, stroke, std::uint8_t{0});
                x += stroke + 3 + random() % 88;
            }
        }

        // A ramp across the page with grain of about two levels (standard deviation).
        void PhotoLine(std::uint8_t* line, std::size_t width, std::size_t y, Random& random)
        {
            for (std::size_t x = 0; x < width; ++x)
            {
                const int level = 40 + static_cast<int>((x * 120 + y * 60) / (width + 1));
                const int grain = static_cast<int>(random() % 5) + static_cast<int>(random() % 5) - 4;
                line[x] = static_cast<std::uint8_t>(std::clamp(level % 200 + 20 + grain, 0, 255));
            }
        }
    }

    const char* Name(Kind kind)
    {
        return kind == Kind::Flat ? "flat" : kind == Kind::Photo ? "photo" : "noise";
    }

    std::vector<std::uint8_t> Make(Kind kind, std::size_t width, std::size_t height)
    {
        Random random(20260101);
        std::vector<std::uint8_t> page(width * height);
        for (std::size_t y = 0; y < height; ++y)
        {
            std::uint8_t* line = page.data() + y * width;
            switch (kind)
            {
            case Kind::Flat:
                FlatLine(line, width, y, random);
                break;
            case Kind::Photo:
                PhotoLine(line, width, y, random);
                break;
            case Kind::Noise:
                std::generate_n(line, width, [&] { return static_cast<std::uint8_t>(random() >> 8); });
                break;
            }
        }
        return page;
    }

    double EqualNeighbours(const std::vector<std::uint8_t>& page, std::size_t width)
    {
        std::size_t equal = 0;
        for (std::size_t i = 1; i < page.size(); ++i)
        {
            equal += (i % width != 0 && page[i] == page[i - 1]) ? 1 : 0;
        }
        return page.empty() ? 0.0 : static_cast<double>(equal) / static_cast<double>(page.size());
    }
}
