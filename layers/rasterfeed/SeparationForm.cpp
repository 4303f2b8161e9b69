// What a separation may be, tag by tag, with the words for what it may not.
#include "rasterfeed/SeparationForm.h"

#include "rasterfeed/Refusal.h"
#include "rasterfeed/TiffFile.h"

#include <algorithm>
#include <cstdint>
#include <string>

namespace RasterFeed
{
    namespace
    {
        constexpr std::uint32_t LargestSide = 2147483647;           // pixels
        constexpr std::uint64_t LargestRow = 1024ull * 1024 * 1024; // bytes, stored or delivered
        constexpr std::uint32_t MostSamples = 32;
        constexpr std::uint32_t WidestFaxRow = 1000000; // pixels; libtiff takes 16 bytes for each, in one piece
        constexpr double ResolutionOfNone = 72;         // pixels per inch

        const char* const AcceptedPhotometric = "; MinIsBlack, MinIsWhite and Separated with one ink are accepted";
        const char* const AcceptedCompression =
            "; none, PackBits, LZW, Deflate, CCITT RLE, Group 3 and 4, JPEG, ZSTD and LZMA are accepted";

        /// What a number of a tag is called.
        struct Name
        {
            std::uint32_t number;
            const char* name;
        };

        /// The name alone; empty if there is none.
        template <std::size_t Count>
        std::string PlainName(std::uint32_t number, const Name (&names)[Count])
        {
            for (const Name& entry : names)
            {
                if (entry.number == number)
                {
                    return entry.name;
                }
            }
            return "";
        }

        template <std::size_t Count>
        std::string NameOf(std::uint32_t number, const Name (&names)[Count])
        {
            const std::string name = PlainName(number, names);
            return std::to_string(number) + (name.empty() ? "" : " (" + name + ")");
        }

        constexpr Name PhotometricNames[] = {
            {PHOTOMETRIC_MINISWHITE, "MinIsWhite"},
            {PHOTOMETRIC_MINISBLACK, "MinIsBlack"},
            {PHOTOMETRIC_RGB, "RGB"},
            {PHOTOMETRIC_PALETTE, "palette"},
            {PHOTOMETRIC_MASK, "transparency mask"},
            {PHOTOMETRIC_SEPARATED, "Separated"},
            {PHOTOMETRIC_YCBCR, "YCbCr"},
            {PHOTOMETRIC_CIELAB, "CIE L*a*b*"},
            {PHOTOMETRIC_ICCLAB, "ICC L*a*b*"},
            {PHOTOMETRIC_ITULAB, "ITU L*a*b*"},
            {PHOTOMETRIC_CFA, "colour filter array"},
            {PHOTOMETRIC_LOGL, "LogL"},
            {PHOTOMETRIC_LOGLUV, "LogLuv"},
        };

        constexpr Name CompressionNames[] = {
            {COMPRESSION_CCITTRLEW, "word-aligned CCITT RLE"},
            {COMPRESSION_OJPEG, "old-style JPEG"},
            {COMPRESSION_NEXT, "NeXT"},
            {COMPRESSION_THUNDERSCAN, "ThunderScan"},
            {COMPRESSION_PIXARLOG, "PixarLog"},
            {COMPRESSION_JBIG, "JBIG"},
            {COMPRESSION_JP2000, "JPEG 2000"},
            {COMPRESSION_LERC, "LERC"},
            {COMPRESSION_WEBP, "WebP"},
            {COMPRESSION_SGILOG, "SGILog"},
            {COMPRESSION_SGILOG24, "SGILog 24"},
            {COMPRESSION_T43, "T.43"},
            {COMPRESSION_T85, "T.85"},
        };

        constexpr Name SampleFormatNames[] = {
            {SAMPLEFORMAT_INT, "signed integers"},
            {SAMPLEFORMAT_IEEEFP, "floating point"},
            {SAMPLEFORMAT_COMPLEXINT, "complex integers"},
            {SAMPLEFORMAT_COMPLEXIEEEFP, "complex floating point"},
        };

        bool IsAcceptedCompression(std::uint32_t compression)
        {
            switch (compression)
            {
            case COMPRESSION_NONE:
            case COMPRESSION_CCITTRLE:
            case COMPRESSION_CCITTFAX3:
            case COMPRESSION_CCITTFAX4:
            case COMPRESSION_LZW:
            case COMPRESSION_JPEG:
            case COMPRESSION_PACKBITS:
            case COMPRESSION_ADOBE_DEFLATE:
            case COMPRESSION_DEFLATE:
            case COMPRESSION_ZSTD:
            case COMPRESSION_LZMA:
                return TIFFIsCODECConfigured(static_cast<std::uint16_t>(compression)) == 1;
            default:
                return false;
            }
        }

        /// Which of the samples of a pixel are stored together, and which of them is the separation's.
        void CheckChannel(const TiffFile& file, std::uint32_t channel, SeparationForm& form)
        {
            const std::uint32_t samples = file.Field<std::uint16_t>(TIFFTAG_SAMPLESPERPIXEL, 1);
            const auto& photometric = file.Facts().photometric;
            const std::string name = photometric ? PlainName(*photometric, PhotometricNames) : "";
            const std::string found = std::to_string(samples) + (samples == 1 ? " sample" : " samples") + " per pixel" +
                                      (name.empty() ? "" : " (" + name + ")");
            const bool mayHaveSeveral = photometric == PHOTOMETRIC_SEPARATED && samples <= MostSamples;
            if (channel == 0 && samples != 1)
            {
                const std::string choice = mayHaveSeveral ? ": choose it by \"page\": " + std::to_string(file.Page()) +
                                                                " and \"channel\": 1 to " + std::to_string(samples)
                                                          : "";
                throw Refusal(found + "; a separation has one" + choice);
            }
            if (samples != 1 && !mayHaveSeveral)
            {
                throw Refusal(found + "; one, and 1 to 32 of Separated, are accepted");
            }
            if (channel > samples)
            {
                throw Refusal(found + "; the page has no channel " + std::to_string(channel));
            }
            const unsigned index = channel == 0 ? 0 : channel - 1;
            const bool isPlanar =
                file.Field<std::uint16_t>(TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG) != PLANARCONFIG_CONTIG;
            form.samples = isPlanar ? 1 : samples;
            form.sample = isPlanar ? 0 : index;
            form.planes = isPlanar ? samples : 1;
            form.plane = isPlanar ? index : 0;
        }

        void CheckSamples(const TiffFile& file, SeparationForm& form)
        {
            const auto& photometric = file.Facts().photometric;
            if (!photometric)
            {
                throw Refusal(
                    std::string("no photometric tag, so that its polarity would be a guess") + AcceptedPhotometric);
            }
            if (*photometric != PHOTOMETRIC_MINISBLACK && *photometric != PHOTOMETRIC_MINISWHITE &&
                *photometric != PHOTOMETRIC_SEPARATED)
            {
                throw Refusal("photometric " + NameOf(*photometric, PhotometricNames) + AcceptedPhotometric);
            }
            form.inverted = *photometric != PHOTOMETRIC_MINISBLACK;

            form.bits = file.Field<std::uint16_t>(TIFFTAG_BITSPERSAMPLE, 1);
            const auto format = file.Field<std::uint16_t>(TIFFTAG_SAMPLEFORMAT, SAMPLEFORMAT_UINT);
            if (format != SAMPLEFORMAT_UINT && format != SAMPLEFORMAT_VOID)
            {
                throw Refusal(
                    "sample format " + NameOf(format, SampleFormatNames) + "; unsigned integers are accepted");
            }
            if (form.bits != 1 && form.bits != 2 && form.bits != 4 && form.bits != 8 && form.bits != 16)
            {
                throw Refusal(std::to_string(form.bits) + " bits per sample; 1, 2, 4, 8 and 16 are accepted");
            }
        }

        void CheckCoding(const TiffFile& file, SeparationForm& form)
        {
            if (!IsAcceptedCompression(file.Compression()))
            {
                throw Refusal("compression " + NameOf(file.Compression(), CompressionNames) + AcceptedCompression);
            }
            form.compression = static_cast<std::uint16_t>(file.Compression());
            if (form.IsFax() && form.bits != 1)
            {
                throw Refusal("CCITT compression of " + std::to_string(form.bits) + " bits per sample; 1 is accepted");
            }
            if (form.IsFax() && form.samples != 1)
            {
                throw Refusal(
                    "CCITT compression of " + std::to_string(form.samples) +
                    " samples that are stored together; a plane for each is accepted");
            }
            if (form.compression == COMPRESSION_JPEG && form.bits != 8)
            {
                throw Refusal("JPEG compression of " + std::to_string(form.bits) + " bits per sample; 8 is accepted");
            }

            const std::uint32_t predictor = HasPredictor(form.compression) ? file.Predictor() : PREDICTOR_NONE;
            if (predictor != PREDICTOR_NONE && (predictor != PREDICTOR_HORIZONTAL || form.bits < 8))
            {
                throw Refusal(
                    "predictor " + std::to_string(predictor) + " of " + std::to_string(form.bits) +
                    " bits per sample; 1, and 2 of 8 or 16 bits, are accepted");
            }
            form.differences = predictor == PREDICTOR_HORIZONTAL;
        }

        void CheckSize(const TiffFile& file, SeparationForm& form)
        {
            form.width = file.Field<std::uint32_t>(TIFFTAG_IMAGEWIDTH, 0);
            form.height = file.Field<std::uint32_t>(TIFFTAG_IMAGELENGTH, 0);
            const auto depth = file.Field<std::uint32_t>(TIFFTAG_IMAGEDEPTH, 1);
            if (depth != 1)
            {
                throw Refusal(std::to_string(depth) + " planes in depth; a separation has one");
            }
            const std::string size = std::to_string(form.width) + " x " + std::to_string(form.height) + " pixels";
            if (form.width == 0 || form.width > LargestSide || form.height == 0 || form.height > LargestSide)
            {
                throw Refusal(size + "; 1 to 2147483647 in each direction are accepted");
            }
            if (std::max(form.RowBytes(), std::uint64_t{form.width}) > LargestRow)
            {
                throw Refusal(size + " in rows of more than 1 GiB; rows of up to 1 GiB are accepted");
            }
            if (form.IsFax() && form.width > WidestFaxRow)
            {
                throw Refusal(size + " in CCITT compression; rows of up to 1000000 pixels are accepted");
            }

            if (form.tiled)
            {
                form.chunkWidth = file.Field<std::uint32_t>(TIFFTAG_TILEWIDTH, 0);
                form.chunkHeight = file.Field<std::uint32_t>(TIFFTAG_TILELENGTH, 0);
            }
            else
            {
                form.chunkWidth = form.width;
                form.chunkHeight = std::min(file.Field<std::uint32_t>(TIFFTAG_ROWSPERSTRIP, form.height), form.height);
            }
            const std::string tiles =
                "tiles of " + std::to_string(form.chunkWidth) + " x " + std::to_string(form.chunkHeight) + " pixels";
            if (form.chunkWidth == 0 || form.chunkWidth > LargestSide || form.chunkHeight == 0 ||
                form.chunkHeight > LargestSide)
            {
                throw Refusal(tiles + "; 1 to 2147483647 in each direction are accepted");
            }
            if (form.tiled && form.ChunksAcross() > 1 &&
                std::uint64_t{form.chunkWidth} * form.samples * form.bits % 8 != 0)
            {
                throw Refusal(tiles + "; widths that are multiples of 16 are accepted");
            }
        }
    }

    bool SeparationForm::IsFax() const
    {
        return RasterFeed::IsFax(compression);
    }

    bool SeparationForm::IsDeflate() const
    {
        return compression == COMPRESSION_ADOBE_DEFLATE || compression == COMPRESSION_DEFLATE;
    }

    SeparationForm InspectForm(const TiffFile& file, std::uint32_t channel)
    {
        SeparationForm form = {};
        CheckChannel(file, channel, form);
        CheckSamples(file, form);
        CheckCoding(file, form);
        form.tiled = file.IsTiled();
        CheckSize(file, form);

        const auto orientation = file.Field<std::uint16_t>(TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT);
        if (orientation < ORIENTATION_TOPLEFT || orientation > ORIENTATION_LEFTBOT)
        {
            throw Refusal("orientation " + std::to_string(orientation) + "; 1 to 8 are accepted");
        }
        form.upright = UprightTurn(orientation);
        form.lowestBitFirst = file.Field<std::uint16_t>(TIFFTAG_FILLORDER, FILLORDER_MSB2LSB) == FILLORDER_LSB2MSB;
        form.byteSwapped = file.IsByteSwapped();

        const DirectoryFacts& facts = file.Facts();
        form.resolution = facts.resolution > 0 ? facts.resolution : ResolutionOfNone;
        form.resolutionDown = facts.resolutionDown > 0 ? facts.resolutionDown : form.resolution;
        return form;
    }
}
