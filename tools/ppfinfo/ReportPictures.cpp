#include "ppfinfo/ReportPictures.h"

#include "ppf/PngWriter.h"

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

    void Composite::Print(const Ppf::Picture& picture, const Colour& ink)
    {
        if (IsEmpty())
        {
            width = picture.width;
            height = picture.height;
            pixels.assign(static_cast<std::size_t>(width * height), White);
        }
        for (std::uint64_t y = 0; y < height; ++y)
        {
            const unsigned char* const row = picture.ink.data() + y * picture.height / height * picture.width;
            for (std::uint64_t x = 0; x < width; ++x)
            {
                Colour& pixel = pixels[static_cast<std::size_t>(y * width + x)];
                pixel = Printed(pixel, ink, row[x * picture.width / width]);
            }
        }
    }

    std::string Composite::Url() const
    {
        std::ostringstream stream;
        Ppf::PngWriter png(stream, width, height, Ppf::PngWriter::Colours::Rgb, std::nullopt);
        std::vector<unsigned char> line;
        for (std::uint64_t y = 0; y < height; ++y)
        {
            line.clear();
            for (std::uint64_t x = 0; x < width; ++x)
            {
                const Colour& pixel = pixels[static_cast<std::size_t>(y * width + x)];
                line.insert(line.end(), {pixel.red, pixel.green, pixel.blue});
            }
            png.WriteRow(line.data());
        }
        png.Finish();
        return PpfInfo::Url(stream);
    }
}
