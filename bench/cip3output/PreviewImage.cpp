// Drawing of the three kinds.
#include "PreviewImage.h"

#include <algorithm>
#include <cstdint>

namespace
{
    /// Pseudo-random numbers, the same on every machine: the upper half of a 64-bit linear congruential generator with
    /// Knuth's MMIX constants.
    class Random
    {
    public:
        std::uint32_t operator()()
        {
            state = state * 6364136223846793005U + 1442695040888963407U;
            return static_cast<std::uint32_t>(state >> 32);
        }
        std::size_t Below(std::size_t bound) { return (*this)() % bound; }

    private:
        std::uint64_t state = 20;
    };

    void FillRectangle(std::string& page, std::size_t x, std::size_t y, std::size_t width, std::size_t height, char ink)
    {
        for (std::size_t row = y; row < std::min(y + height, PreviewImage::Height); ++row)
        {
            const std::size_t end = std::min(x + width, PreviewImage::Width);
            std::fill(
                page.begin() + static_cast<std::ptrdiff_t>(row * PreviewImage::Width + x),
                page.begin() + static_cast<std::ptrdiff_t>(row * PreviewImage::Width + end), ink);
        }
    }

    /// A letter: two stems and a bar, with a grey pixel on either side of each stem.
    void DrawLetter(std::string& page, std::size_t x, std::size_t y, Random& random)
    {
        constexpr std::size_t height = 36;
        const std::size_t width = 14 + random.Below(10);
        const auto grey = static_cast<char>(64 + random.Below(128));
        for (const std::size_t stem : {x, x + width})
        {
            FillRectangle(page, stem, y, 7, height, grey);
            FillRectangle(page, stem + 1, y, 5, height, 0);
        }
        FillRectangle(page, x + 6, y + random.Below(height - 5), width - 6, 5, 0);
    }

    void DrawPage(std::string& page)
    {
        constexpr std::size_t margin = 250;
        Random random;
        std::fill(page.begin(), page.end(), static_cast<char>(255));
        for (int tint = 0; tint < 40; ++tint)
        {
            const std::size_t x = random.Below(PreviewImage::Width - 400);
            const std::size_t y = random.Below(PreviewImage::Height - 300);
            FillRectangle(page, x, y, 200 + random.Below(1200), 100 + random.Below(700), static_cast<char>(random()));
        }
        for (std::size_t y = margin; y + margin < PreviewImage::Height; y += 120)
        {
            for (std::size_t x = margin; x + margin < PreviewImage::Width; x += 45)
            {
                const bool betweenWords = random.Below(6) == 0;
                if (!betweenWords)
                {
                    DrawLetter(page, x, y, random);
                }
            }
        }
    }

    void DrawPhoto(std::string& page)
    {
        Random random;
        for (std::size_t y = 0; y < PreviewImage::Height; ++y)
        {
            for (std::size_t x = 0; x < PreviewImage::Width; ++x)
            {
                // The sum of four even distributions is close to a normal one, here of a deviation of 2 levels.
                const std::uint32_t bits = random();
                const std::size_t grain = (bits & 3) + (bits >> 8 & 3) + (bits >> 16 & 3) + (bits >> 24 & 3);
                page[y * PreviewImage::Width + x] = static_cast<char>((x / 20 + y / 30 + grain) & 0xFF);
            }
        }
    }

    void DrawNoise(std::string& page)
    {
        Random random;
        std::generate(page.begin(), page.end(), [&random] { return static_cast<char>(random() >> 8); });
    }
}

PreviewImage::PreviewImage(Kind kind)
    : bytes(Width * Height, '\0')
{
    switch (kind)
    {
    case Kind::Flat:
        DrawPage(bytes);
        break;
    case Kind::Photo:
        DrawPhoto(bytes);
        break;
    case Kind::Noise:
        DrawNoise(bytes);
        break;
    }
}

const PreviewImage& PreviewImage::Of(Kind kind)
{
    static const PreviewImage flat(Kind::Flat);
    static const PreviewImage photo(Kind::Photo);
    static const PreviewImage noise(Kind::Noise);
    return kind == Kind::Flat ? flat : kind == Kind::Photo ? photo : noise;
}

const char* PreviewImage::NameOf(Kind kind)
{
    return kind == Kind::Flat ? "flat" : kind == Kind::Photo ? "photo" : "noise";
}

double PreviewImage::EqualNeighbours() const
{
    std::size_t equal = 0;
    for (std::size_t i = 0; i + 1 < bytes.size(); ++i)
    {
        equal += bytes[i] == bytes[i + 1] ? 1 : 0;
    }
    return static_cast<double>(equal) / static_cast<double>(bytes.size());
}
