#include "ppf/ScanLineReader.h"

#include "ppf/DCTSource.h"
#include "ppf/EncodedSource.h"
#include "ppf/RunLengthSource.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string>

namespace Ppf
{
    namespace
    {
        /// Rows are pulled through the decoders in blocks of about this many bytes: in the second cache of every
        /// machine, and long against what a call costs.
        constexpr std::size_t BlockBytes = 128u << 10;

        /// Bytes that a decoder makes of one at most.
        constexpr std::uint64_t Ascii85Growth = 4;
        constexpr std::uint64_t RunLengthGrowth = 64;
        /// A block of 64 pixels takes at least two bits where every code is the shortest; sampling factors stretch
        /// what a block covers up to eightfold. What a progressive picture adds to this the decoder's memory limits.
        constexpr std::uint64_t DctGrowth = std::uint64_t{64} * 4 * 8;

        std::uint64_t MostDecodedBytes(const Preview& preview)
        {
            const std::uint64_t encodingGrowth = preview.encoding == Encoding::Ascii85 ? Ascii85Growth : 1;
            const std::uint64_t compressionGrowth = preview.compression == Compression::RunLength ? RunLengthGrowth
                                                    : preview.compression == Compression::Dct     ? DctGrowth
                                                                                                  : 1;
            return preview.data.size() * encodingGrowth * compressionGrowth;
        }

        std::unique_ptr<ByteSource> MakeSource(const Document& document, const Preview& preview)
        {
            std::unique_ptr<ByteSource> encoded = MakeEncodedSource(document, preview);
            switch (preview.compression)
            {
            case Compression::None:
                return encoded;
            case Compression::RunLength:
                return std::make_unique<RunLengthSource>(std::move(encoded));
            case Compression::Dct:
                if (preview.bitsPerComponent != 8)
                {
                    throw FormatError(preview.offset, "DCT data stands for 8 bits per component, not for 1");
                }
                return std::make_unique<DCTSource>(std::move(encoded), preview);
            default:
                throw FormatError(
                    preview.offset,
                    "compression /" + std::string(preview.compressionName) + " is not one that this reader knows");
            }
        }

        using Octet = std::array<unsigned char, 8>;

        constexpr std::array<Octet, 256> MakeOctets()
        {
            std::array<Octet, 256> octets = {};
            for (std::size_t byte = 0; byte < octets.size(); ++byte)
            {
                for (std::size_t bit = 0; bit < 8; ++bit)
                {
                    octets[byte][bit] = (byte >> (7 - bit) & 1) != 0 ? 255 : 0;
                }
            }
            return octets;
        }

        /// The eight components that a byte of a 1-bit image holds, the highest bit first.
        constexpr std::array<Octet, 256> Octets = MakeOctets();
    }

    ScanLineReader::ScanLineReader(const Document& document, const Preview& preview)
        : dataEnd(document.OffsetOf(preview.data) + preview.data.size())
        , height(preview.height)
        , storedRowBytes(static_cast<std::size_t>(preview.StoredRowBytes()))
        , isBilevel(preview.bitsPerComponent == 1)
        , isDct(preview.compression == Compression::Dct)
        , source(MakeSource(document, preview))
    {
        if (preview.StoredBytes() > MostDecodedBytes(preview))
        {
            throw FormatError(
                document.OffsetOf(preview.data),
                "preview of " + std::to_string(preview.width) + " x " + std::to_string(preview.height) +
                    " pixels has " + std::to_string(preview.data.size()) + " bytes of data, which cannot hold it");
        }
        const std::uint64_t rows = std::clamp<std::uint64_t>(BlockBytes / preview.StoredRowBytes(), 1, height);
        block.resize(static_cast<std::size_t>(rows) * storedRowBytes);
        if (isBilevel)
        {
            expanded.resize(storedRowBytes * 8);
        }
    }

    ScanLineReader::~ScanLineReader() = default;

    unsigned char* ScanLineReader::Next()
    {
        if (rowsRead == height)
        {
            return nullptr;
        }
        if (next == end)
        {
            Refill();
        }
        unsigned char* const stored = block.data() + next;
        next += storedRowBytes;
        ++rowsRead;
        if (!isBilevel)
        {
            return stored;
        }
        Expand(stored);
        return expanded.data();
    }

    void ScanLineReader::Refill()
    {
        const std::uint64_t rows = std::min<std::uint64_t>(block.size() / storedRowBytes, height - rowsRead);
        const std::size_t wanted = static_cast<std::size_t>(rows) * storedRowBytes;
        const std::size_t got = source->Read(block.data(), wanted);
        next = 0;
        // Rows before a gap are delivered; the next call comes to it.
        end = got - got % storedRowBytes;
        if (end == 0)
        {
            throw FormatError(
                dataEnd,
                "preview's data ends in row " + std::to_string(rowsRead + 1) + " of " + std::to_string(height));
        }
    }

    void ScanLineReader::Expand(const unsigned char* stored)
    {
        for (std::size_t i = 0; i < storedRowBytes; ++i)
        {
            std::memcpy(expanded.data() + 8 * i, Octets[stored[i]].data(), 8);
        }
    }

    std::uint64_t ScanLineReader::CountExcess()
    {
        std::uint64_t excess = 0;
        std::array<unsigned char, 4096> bytes = {};
        for (std::size_t got = bytes.size(); got == bytes.size() && !isDct; excess += got)
        {
            got = source->Read(bytes.data(), bytes.size());
        }
        return excess;
    }
}
