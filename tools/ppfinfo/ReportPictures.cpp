// Inks multiplied over paper, and pictures as URLs within the page.
#include "ppfinfo/ReportPictures.h"

#include <sstream>

#include "ppf/PngWriter.h"

namespace ppfinfo
{
    namespace
    {
        constexpr Colour white = {255, 255, 255};

        std::string Base64(const std::string& bytes)
        {
            constexpr char digits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
            std::string text;
            text.reserve((bytes.size() + 2) / 3 * 4);
            for (std::size_t i = 0; i < bytes.size(); i += 3)
            {
                const auto byte = [&](std::size_t at)
                { return at < bytes.size() ? static_cast<unsigned char>(bytes[at]) : 0u; };
                const unsigned group = byte(i) << 16 | byte(i + 1) << 8 | byte(i + 2);
                text += digits[group >> 18];
                text += digits[group >> 12 & 63];
                text += i + 1 < bytes.size() ? digits[group >> 6 & 63] : '=';
                text += i + 2 < bytes.size() ? digits[group & 63] : '=';
            }
            return text;
        }

        std::string Url(const std::ostringstream& png)
        {
            return "data:image/png;base64," + Base64(png.str());
        }
    }

    std::string TintedPictureUrl(const ppf::Picture& picture, const Colour& ink)
    {
        ppf::PngWriter::Palette palette;
        for (std::size_t i = 0; i < palette.size(); ++i)
        {
            const Colour colour = Printed(white, ink, static_cast<unsigned char>(i));
            palette[i] = {colour.red, colour.green, colour.blue};
        }
        std::ostringstream stream;
        ppf::PngWriter png(
            stream, picture.width, picture.height, ppf::PngWriter::Colours::palette, std::nullopt, palette);
        for (std::uint64_t y = 0; y < picture.height; ++y)
        {
            png.WriteRow(picture.ink.data() + y * picture.width);
        }
        png.Finish();
        return Url(stream);
    }

    void Composite::Print(const ppf::Picture& picture, const Colour& ink)
    {
        if (IsEmpty())
        {
            m_width = picture.width;
            m_height = picture.height;
            m_pixels.assign(static_cast<std::size_t>(m_width * m_height), white);
        }
        for (std::uint64_t y = 0; y < m_height; ++y)
        {
            const unsigned char* const row = picture.ink.data() + y * picture.height / m_height * picture.width;
            for (std::uint64_t x = 0; x < m_width; ++x)
            {
                Colour& pixel = m_pixels[static_cast<std::size_t>(y * m_width + x)];
                pixel = Printed(pixel, ink, row[x * picture.width / m_width]);
            }
        }
    }

    std::string Composite::Url() const
    {
        std::ostringstream stream;
        ppf::PngWriter png(stream, m_width, m_height, ppf::PngWriter::Colours::rgb, std::nullopt);
        std::vector<unsigned char> line;
        for (std::uint64_t y = 0; y < m_height; ++y)
        {
            line.clear();
            for (std::uint64_t x = 0; x < m_width; ++x)
            {
                const Colour& pixel = m_pixels[static_cast<std::size_t>(y * m_width + x)];
                line.insert(line.end(), {pixel.red, pixel.green, pixel.blue});
            }
            png.WriteRow(line.data());
        }
        png.Finish();
        return ppfinfo::Url(stream);
    }
}
