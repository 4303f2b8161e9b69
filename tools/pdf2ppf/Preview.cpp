// The preview is written without libtiff, which keeps a resolution in single precision, so that 50.8 would not come out.
#include "pdf2ppf/Preview.h"

#include "host/Descriptor.h"
#include "host/DescriptorStream.h"
#include "host/Failure.h"
#include "host/Text.h"
#include "pdf2ppf/SeparationLines.h"

#include <array>
#include <cerrno>
#include <cmath>
#include <limits>

#include <fcntl.h>

namespace Pdf2Ppf
{
    namespace
    {
        constexpr unsigned char Paper = 255;

        // Little endian, as the byte order mark says: header, pixels' description, two resolutions, pixels in one strip.
        constexpr std::uint32_t HeaderBytes = 8;
        constexpr std::uint32_t Entries = 11;
        constexpr std::uint32_t DirectoryBytes = 2 + Entries * 12 + 4;
        constexpr std::uint32_t ResolutionsAt = HeaderBytes + DirectoryBytes;
        constexpr std::uint32_t RationalBytes = 8;
        constexpr std::uint32_t PixelsAt = ResolutionsAt + 2 * RationalBytes;

        constexpr std::uint32_t Short = 3;
        constexpr std::uint32_t Long = 4;
        constexpr std::uint32_t Rational = 5;

        void Put(std::string& bytes, std::uint32_t value, int size)
        {
            for (int i = 0; i < size; ++i)
            {
                bytes += static_cast<char>(value >> (8 * i) & 0xFFU);
            }
        }

        void PutEntry(std::string& bytes, std::uint32_t tag, std::uint32_t type, std::uint32_t value)
        {
            Put(bytes, tag, 2);
            Put(bytes, type, 2);
            Put(bytes, 1, 4); // value
            Put(bytes, value, 4);
        }

        /// All of the file before its pixels.
        std::string Head(const Size& size, double resolution)
        {
            // Whole millionths: as many as 32 bits hold for every resolution up to 4294.
            constexpr std::uint32_t Denominator = 1000000;
            const auto numerator = static_cast<std::uint32_t>(std::llround(resolution * Denominator));

            std::string bytes = "II*";
            Put(bytes, 0, 1);
            Put(bytes, HeaderBytes, 4);
            Put(bytes, Entries, 2);
            PutEntry(bytes, 256, Long, size.width);
            PutEntry(bytes, 257, Long, size.height);
            PutEntry(bytes, 258, Short, 8); // bits per sample
            PutEntry(bytes, 259, Short, 1); // not compressed
            PutEntry(bytes, 262, Short, 1); // 0 is black
            PutEntry(bytes, 273, Long, PixelsAt);
            PutEntry(bytes, 278, Long, size.height); // rows of the strip
            PutEntry(bytes, 279, Long, size.width * size.height);
            PutEntry(bytes, 282, Rational, ResolutionsAt);
            PutEntry(bytes, 283, Rational, ResolutionsAt + RationalBytes);
            PutEntry(bytes, 296, Short, 2); // per inch
            Put(bytes, 0, 4);               // no further directory
            for (int i = 0; i < 2; ++i)
            {
                Put(bytes, numerator, 4);
                Put(bytes, Denominator, 4);
            }
            return bytes;
        }
    }

    bool HasInk(const std::string& path)
    {
        SeparationLines lines(path, {});
        const std::vector<unsigned char> paper(lines.Width(), Paper);
        for (std::uint32_t i = 0; i < lines.Height(); ++i)
        {
            if (lines.Next() != paper)
            {
                return true;
            }
        }
        return false;
    }

    Size WritePreview(const std::string& source, const std::string& target, const RasterFeedSelection& selection)
    {
        SeparationLines lines(source, selection);
        const Size size{lines.Width(), lines.Height()};
        if (std::uint64_t(size.width) * size.height > std::numeric_limits<std::uint32_t>::max() - PixelsAt)
        {
            throw Host::Failure(
                "a preview of " + std::to_string(size.width) + " x " + std::to_string(size.height) +
                " pixels is too large: choose a lower --resolution");
        }
        constexpr int Flags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
        Host::Descriptor file(Host::Uninterrupted([&] { return open(target.c_str(), Flags, S_IRUSR | S_IWUSR); }));
        if (!file.IsOpen())
        {
            throw Host::Failure(target + ": " + Host::SystemText(errno));
        }
        Host::DescriptorStream stream(file.Number());
        stream << Head(size, selection.resolution);
        for (std::uint32_t i = 0; i < size.height; ++i)
        {
            stream.write(reinterpret_cast<const char*>(lines.Next().data()), size.width);
        }
        stream.Finish(target);
        if (!file.Close())
        {
            throw Host::Failure(target + ": " + Host::SystemText(errno));
        }
        return size;
    }
}
