// The few bytes of a TIFF that this layer reads by itself: its start, and the entries of one directory.
#include "rasterfeed/DirectoryFacts.h"

#include "rasterfeed/Refusal.h"
#include "rasterfeed/SourceFile.h"

#include <tiff.h>

#include <cmath>
#include <cstring>
#include <string>

namespace RasterFeed
{
    namespace
    {
        const char* const NotATiff = "not a TIFF file; TIFF and BigTIFF are accepted";
        const char* const CutDirectory = "the file ends inside its directory; a whole TIFF is needed";

        // A directory with more entries is taken for damage, as libtiff does.
        constexpr std::uint64_t MostEntries = 4096;

        /// Numbers of a TIFF at their places.
        class Numbers
        {
        public:
            Numbers(SourceFile& source, bool bigEndian)
                : file(source)
                , highestFirst(bigEndian)
            {
            }

            /// The unsigned number of `width` bytes (1 to 8) at `position`.
            std::uint64_t At(std::uint64_t position, unsigned width) const
            {
                unsigned char bytes[8];
                if (file.Read(position, bytes, width) != width)
                {
                    throw Refusal(CutDirectory);
                }
                std::uint64_t number = 0;
                for (unsigned i = 0; i < width; ++i)
                {
                    number = number << 8 | bytes[highestFirst ? i : width - 1 - i];
                }
                return number;
            }

        private:
            SourceFile& file;
            bool highestFirst;
        };

        /// One entry of a directory.
        struct Entry
        {
            std::uint16_t tag;
            std::uint16_t type;
            std::uint64_t count; ///< values
            std::uint64_t value; ///< where the values are, bytes from the start of the file
        };

        /// Bytes of one value, 0 for a type that TIFF does not have.
        unsigned SizeOf(std::uint16_t type)
        {
            switch (type)
            {
            case TIFF_BYTE:
            case TIFF_ASCII:
            case TIFF_SBYTE:
            case TIFF_UNDEFINED:
                return 1;
            case TIFF_SHORT:
            case TIFF_SSHORT:
                return 2;
            case TIFF_LONG:
            case TIFF_SLONG:
            case TIFF_FLOAT:
            case TIFF_IFD:
                return 4;
            case TIFF_RATIONAL:
            case TIFF_SRATIONAL:
            case TIFF_DOUBLE:
            case TIFF_LONG8:
            case TIFF_SLONG8:
            case TIFF_IFD8:
                return 8;
            default:
                return 0;
            }
        }

        /// A number that is `numerator` / `denominator` exactly, both being exact as doubles.
        struct Ratio
        {
            double numerator = 0;
            double denominator = 1;
        };

        Ratio ReadRatio(const Numbers& numbers, const Entry& entry)
        {
            if (entry.count == 0)
            {
                return {};
            }
            const auto number = [&] { return numbers.At(entry.value, SizeOf(entry.type)); };
            switch (entry.type)
            {
            case TIFF_RATIONAL:
                return {
                    static_cast<double>(numbers.At(entry.value, 4)),
                    static_cast<double>(numbers.At(entry.value + 4, 4))};
            case TIFF_SRATIONAL:
                return {
                    static_cast<double>(static_cast<std::int32_t>(numbers.At(entry.value, 4))),
                    static_cast<double>(static_cast<std::int32_t>(numbers.At(entry.value + 4, 4)))};
            case TIFF_BYTE:
            case TIFF_SHORT:
            case TIFF_LONG:
            case TIFF_LONG8:
                return {static_cast<double>(number()), 1};
            case TIFF_SBYTE:
                return {static_cast<double>(static_cast<std::int8_t>(number())), 1};
            case TIFF_SSHORT:
                return {static_cast<double>(static_cast<std::int16_t>(number())), 1};
            case TIFF_SLONG:
                return {static_cast<double>(static_cast<std::int32_t>(number())), 1};
            case TIFF_SLONG8:
                return {static_cast<double>(static_cast<std::int64_t>(number())), 1};
            case TIFF_FLOAT:
            {
                const auto bits = static_cast<std::uint32_t>(number());
                float value;
                std::memcpy(&value, &bits, sizeof value);
                return {value, 1};
            }
            case TIFF_DOUBLE:
            {
                const std::uint64_t bits = number();
                double value;
                std::memcpy(&value, &bits, sizeof value);
                return {value, 1};
            }
            default:
                return {};
            }
        }

        bool IsWhole(std::uint16_t type)
        {
            return type == TIFF_BYTE || type == TIFF_SHORT || type == TIFF_LONG || type == TIFF_LONG8;
        }

        /// An unsigned whole number, as tags with one small value have it.
        std::optional<std::uint32_t> ReadWhole(const Numbers& numbers, const Entry& entry)
        {
            if (entry.count == 0 || !IsWhole(entry.type))
            {
                return std::nullopt;
            }
            const std::uint64_t number = numbers.At(entry.value, SizeOf(entry.type));
            return number <= 0xFFFFFFFF ? std::optional(static_cast<std::uint32_t>(number)) : std::nullopt;
        }

        /// The tags that say how an image is stored, less Compression and what belongs to one alone.
        bool IsOfForm(std::uint16_t tag)
        {
            switch (tag)
            {
            case TIFFTAG_SUBFILETYPE:
            case TIFFTAG_IMAGEWIDTH:
            case TIFFTAG_IMAGELENGTH:
            case TIFFTAG_BITSPERSAMPLE:
            case TIFFTAG_PHOTOMETRIC:
            case TIFFTAG_FILLORDER:
            case TIFFTAG_STRIPOFFSETS:
            case TIFFTAG_ORIENTATION:
            case TIFFTAG_SAMPLESPERPIXEL:
            case TIFFTAG_ROWSPERSTRIP:
            case TIFFTAG_STRIPBYTECOUNTS:
            case TIFFTAG_PLANARCONFIG:
            case TIFFTAG_COLORMAP:
            case TIFFTAG_TILEWIDTH:
            case TIFFTAG_TILELENGTH:
            case TIFFTAG_TILEOFFSETS:
            case TIFFTAG_TILEBYTECOUNTS:
            case TIFFTAG_EXTRASAMPLES:
            case TIFFTAG_SAMPLEFORMAT:
            case TIFFTAG_JPEGTABLES:
            case TIFFTAG_YCBCRSUBSAMPLING:
            case TIFFTAG_IMAGEDEPTH:
                return true;
            default:
                return false;
            }
        }

        /// Where a tag stands twice the first counts.
        void KeepFirst(NumberList& list, const Entry& entry)
        {
            if (list.count == 0)
            {
                list = {entry.value, entry.count, SizeOf(entry.type)};
            }
        }

        void KeepFirst(std::optional<std::uint32_t>& number, const Numbers& numbers, const Entry& entry)
        {
            if (!number)
            {
                number = ReadWhole(numbers, entry);
            }
        }

        std::string Encoded(const TiffPreamble& preamble, std::uint64_t number, unsigned width)
        {
            std::string bytes(width, '\0');
            for (unsigned i = 0; i < width; ++i)
            {
                bytes[preamble.bigEndian ? width - 1 - i : i] = static_cast<char>(number >> 8 * i & 0xff);
            }
            return bytes;
        }

        /// An entry that gives `tag` one value of the type SHORT.
        std::string ShortEntry(const TiffPreamble& preamble, std::uint16_t tag, std::uint16_t value)
        {
            const unsigned wordWidth = preamble.big ? 8 : 4;
            return Encoded(preamble, tag, 2) + Encoded(preamble, TIFF_SHORT, 2) + Encoded(preamble, 1, wordWidth) +
                   Encoded(preamble, value, 2) + std::string(wordWidth - 2, '\0');
        }

        /// Where the entries of a directory are.
        struct EntryPlaces
        {
            std::uint64_t first; ///< bytes from the start of the file
            std::uint64_t count;
            std::uint64_t bytes; ///< of each
            unsigned wordWidth;  ///< bytes of a count or an offset

            std::uint64_t End() const { return first + count * bytes; }
        };

        EntryPlaces FindEntries(SourceFile& file, const TiffPreamble& preamble, std::uint64_t offset)
        {
            if (offset == 0)
            {
                throw Refusal("no image; a TIFF with one is needed");
            }
            if (offset >= file.Size())
            {
                throw Refusal(
                    "a directory at byte " + std::to_string(offset) + ", beyond the end of the file of " +
                    std::to_string(file.Size()) + " bytes; a whole TIFF is needed");
            }
            const unsigned countWidth = preamble.big ? 8 : 2;
            const unsigned wordWidth = preamble.big ? 8 : 4;
            const std::uint64_t count = Numbers(file, preamble.bigEndian).At(offset, countWidth);
            if (count == 0 || count > MostEntries)
            {
                throw Refusal("damaged directory with " + std::to_string(count) + " entries; 1 to 4096 are accepted");
            }
            return {offset + countWidth, count, 4 + std::uint64_t{2} * wordWidth, wordWidth};
        }

        /// A file may end with its last directory's last entry.
        std::uint64_t NextAfter(SourceFile& file, const Numbers& numbers, const EntryPlaces& entries)
        {
            const std::uint64_t end = entries.End();
            return end + entries.wordWidth <= file.Size() ? numbers.At(end, entries.wordWidth) : 0;
        }

        double PixelsPerInch(const Ratio& resolution, std::uint32_t unit)
        {
            double result = 0;
            if (unit == RESUNIT_INCH)
            {
                result = resolution.numerator / resolution.denominator;
            }
            else if (unit == RESUNIT_CENTIMETER)
            { // 2.54 cm are an inch; kept whole, so that one rounding is all there is
                result = resolution.numerator * 254 / (resolution.denominator * 100);
            }
            return std::isfinite(result) && result > 0 ? result : 0;
        }
    }

    TiffPreamble ReadPreamble(SourceFile& file)
    {
        unsigned char order[2];
        if (file.Read(0, order, sizeof order) != sizeof order || order[0] != order[1] ||
            (order[0] != 'I' && order[0] != 'M'))
        {
            throw Refusal(NotATiff);
        }
        const Numbers numbers(file, order[0] == 'M');
        TiffPreamble preamble = {order[0] == 'M', false, 0};
        try
        {
            const std::uint64_t version = numbers.At(2, 2);
            if (version != TIFF_VERSION_CLASSIC && version != TIFF_VERSION_BIG)
            {
                throw Refusal(NotATiff);
            }
            preamble.big = version == TIFF_VERSION_BIG;
            preamble.firstDirectory = preamble.big ? numbers.At(8, 8) : numbers.At(4, 4);
        }
        catch (const Refusal&)
        {
            throw Refusal(NotATiff);
        }
        return preamble;
    }

    std::uint64_t
    NumberInList(SourceFile& file, const TiffPreamble& preamble, const NumberList& list, std::uint64_t index)
    {
        return Numbers(file, preamble.bigEndian).At(list.position + index * list.width, list.width);
    }

    bool IsFax(std::uint32_t compression)
    {
        return compression == COMPRESSION_CCITTRLE || compression == COMPRESSION_CCITTFAX3 ||
               compression == COMPRESSION_CCITTFAX4;
    }

    bool HasPredictor(std::uint32_t compression)
    {
        return compression == COMPRESSION_LZW || compression == COMPRESSION_ADOBE_DEFLATE ||
               compression == COMPRESSION_DEFLATE || compression == COMPRESSION_ZSTD || compression == COMPRESSION_LZMA;
    }

    std::string DirectoryBytes(const TiffPreamble& preamble, const std::string& entries)
    {
        const std::size_t entryBytes = preamble.big ? 20 : 12;
        return Encoded(preamble, entries.size() / entryBytes, preamble.big ? 8 : 2) + entries +
               Encoded(preamble, 0, preamble.big ? 8 : 4);
    }

    std::uint64_t NextDirectory(SourceFile& file, const TiffPreamble& preamble, std::uint64_t offset)
    {
        return NextAfter(file, Numbers(file, preamble.bigEndian), FindEntries(file, preamble, offset));
    }

    DirectoryFacts ReadDirectoryFacts(SourceFile& file, const TiffPreamble& preamble, std::uint64_t offset)
    {
        const Numbers numbers(file, preamble.bigEndian);
        const EntryPlaces entries = FindEntries(file, preamble, offset);
        const unsigned wordWidth = entries.wordWidth;

        DirectoryFacts facts;
        Ratio resolution;
        Ratio resolutionDown;
        std::uint32_t unit = RESUNIT_INCH;
        std::optional<std::uint32_t> oldSubfileType;
        bool subfileTypeSeen = false;
        bool resolutionSeen = false;
        bool resolutionDownSeen = false;
        bool unitSeen = false;
        for (std::uint64_t at = entries.first; at < entries.End(); at += entries.bytes)
        {
            Entry entry = {};
            entry.tag = static_cast<std::uint16_t>(numbers.At(at, 2));
            entry.type = static_cast<std::uint16_t>(numbers.At(at + 2, 2));
            entry.count = numbers.At(at + 4, wordWidth);
            if (IsOfForm(entry.tag))
            {
                char bytes[20];
                if (file.Read(at, bytes, entries.bytes) != entries.bytes)
                {
                    throw Refusal(CutDirectory);
                }
                facts.formEntries.append(bytes, entries.bytes);
            }
            const unsigned size = SizeOf(entry.type);
            if (size == 0)
            {
                continue;
            }
            const bool outside = entry.count > wordWidth / size;
            entry.value = outside ? numbers.At(at + 4 + wordWidth, wordWidth) : at + 4 + wordWidth;

            const bool isInFile = file.Size() >= size && entry.value <= file.Size() - size;

            // Where a tag stands twice the first counts, as it does for libtiff.
            switch (entry.tag)
            {
            case TIFFTAG_PHOTOMETRIC:
                KeepFirst(facts.photometric, numbers, entry);
                break;
            case TIFFTAG_COMPRESSION:
                if (!facts.compression)
                {
                    facts.compression = ReadWhole(numbers, entry).value_or(0);
                    const bool isShown =
                        *facts.compression == COMPRESSION_NONE || *facts.compression == COMPRESSION_JPEG;
                    facts.formEntries += ShortEntry(
                        preamble, entry.tag,
                        isShown ? static_cast<std::uint16_t>(*facts.compression) : std::uint16_t{COMPRESSION_PACKBITS});
                }
                break;
            case TIFFTAG_PREDICTOR:
                if (!facts.predictor)
                {
                    facts.predictor = ReadWhole(numbers, entry).value_or(0);
                }
                break;
            case TIFFTAG_T4OPTIONS:
                KeepFirst(facts.faxOptions, numbers, entry);
                break;
            case TIFFTAG_XRESOLUTION:
                if (!resolutionSeen && isInFile)
                {
                    resolution = ReadRatio(numbers, entry);
                }
                resolutionSeen = true;
                break;
            case TIFFTAG_YRESOLUTION:
                if (!resolutionDownSeen && isInFile)
                {
                    resolutionDown = ReadRatio(numbers, entry);
                }
                resolutionDownSeen = true;
                break;
            case TIFFTAG_RESOLUTIONUNIT:
                if (!unitSeen)
                {
                    unit = ReadWhole(numbers, entry).value_or(RESUNIT_NONE);
                }
                unitSeen = true;
                break;
            case TIFFTAG_SUBFILETYPE:
                subfileTypeSeen = true;
                break;
            case TIFFTAG_OSUBFILETYPE:
                KeepFirst(oldSubfileType, numbers, entry);
                break;
            case TIFFTAG_INKSET:
                KeepFirst(facts.inkSet, numbers, entry);
                break;
            case TIFFTAG_EXTRASAMPLES:
                KeepFirst(facts.extraSamples, entry);
                break;
            case TIFFTAG_INKNAMES:
                KeepFirst(facts.inkNames, entry);
                break;
            case TIFFTAG_PAGENAME:
                KeepFirst(facts.pageName, entry);
                break;
            case TIFFTAG_PHOTOSHOP:
                KeepFirst(facts.imageResources, entry);
                break;
            case TIFFTAG_STRIPBYTECOUNTS:
                if (facts.stripBytes.count == 0 && IsWhole(entry.type))
                {
                    facts.stripBytes = {entry.value, entry.count, size};
                }
                continue;
            case TIFFTAG_STRIPOFFSETS:
            case TIFFTAG_TILEOFFSETS:
            case TIFFTAG_TILEBYTECOUNTS:
                continue;
            default:
                break;
            }
            if (outside && entry.count <= LargestTag / size)
            {
                facts.tagBytes += entry.count * size;
            }
        }
        facts.resolution = PixelsPerInch(resolution, unit);
        facts.resolutionDown = PixelsPerInch(resolutionDown, unit);
        facts.isReducedImage = !subfileTypeSeen && oldSubfileType == OFILETYPE_REDUCEDIMAGE;
        facts.entries = entries.count;
        facts.next = NextAfter(file, numbers, entries);
        return facts;
    }
}
