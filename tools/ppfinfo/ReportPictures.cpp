#include "ppfinfo/ReportPictures.h"

#include "ppf/PngWriter.h"

#include <algorithm>
#include <new>
#include <sstream>

namespace PpfInfo
{
    namespace
    {
        constexpr Colour White = {255, 255, 255};

        std::string Base64(const std::string& bytes)
        {
            constexpr char Digits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
            std::string text;
            text.reserve((bytes.size() + 2) / 3 * 4);
            for (std::size_t i = 0; i < bytes.size(); i += 3)
            {
                const auto byte = [&](std::size_t at)
                { return at < bytes.size() ? static_cast<unsigned char>(bytes[at]) : 0u; };
                const unsigned group = byte(i) << 16 | byte(i + 1) << 8 | byte(i + 2);
                text += Digits[group >> 18];
                text += Digits[group >> 12 & 63];
                text += i + 1 < bytes.size() ? Digits[group >> 6 & 63] : '=';
                text += i + 2 < bytes.size() ? Digits[group & 63] : '=';
            }
            return text;
        }

        /// Throws std::bad_alloc if the stream could not take the picture.
        std::string Url(const std::ostringstream& png)
        {
            if (!png)
            {
                throw std::bad_alloc();
            }
            return "data:image/png;base64," + Base64(png.str());
        }
    }

    std::string TintedPictureUrl(const Ppf::Picture& picture, const Colour& ink)
    {
        Ppf::PngWriter::Palette palette;
        for (std::size_t i = 0; i < palette.size(); ++i)
        {
            const Colour colour = Printed(White, ink, static_cast<unsigned char>(i));
            palette[i] = {colour.red, colour.green, colour.blue};
        }
        std::ostringstream stream;
        Ppf::PngWriter png(
            stream, picture.width, picture.height, Ppf::PngWriter::Colours::Palette, std::nullopt, palette);
        for (std::uint64_t y = 0; y < picture.height; ++y)
        {
            png.WriteRow(picture.ink.data() + y * picture.width);
        }
        png.Finish();
        return Url(stream);
    }

    void InkTotal::BeginInk(std::uint64_t theWidth, std::uint64_t theHeight)
    {
        // A sum has 16 bits.
        constexpr unsigned MostInks = 65535 / 255;
        constexpr std::uint64_t MostPixels = 1u << 27;
        if (inks == 0)
        {
            width = theWidth;
            height = theHeight;
            fits = width <= MostPixels / height;
            sums.resize(fits ? static_cast<std::size_t>(width * height) : 0);
        }
        ++inks;
        row = 0;
        fits = fits && inks <= MostInks && theWidth == width && theHeight == height;
    }

    void InkTotal::Add(const unsigned char* samples)
    {
        if (!fits)
        {
            return;
        }
        std::uint16_t* const out = sums.data() + row * width;
        for (std::uint64_t x = 0; x < width; ++x)
        {
            out[x] = static_cast<std::uint16_t>(out[x] + samples[x]);
        }
        ++row;
    }

    std::optional<InkTotal::Spot> InkTotal::Highest() const
    {
        if (!fits || sums.empty())
        {
            return std::nullopt;
        }
        const auto highest = std::max_element(sums.begin(), sums.end());
        const auto place = static_cast<std::uint64_t>(highest - sums.begin());
        return Spot{*highest / 255.0 * 100, place % width, place / width};
    }
}
