// A chain of sources by compression and encoding, and bits widened to bytes.
#include "ppf/ScanLineReader.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string>

#include "ppf/ASCII85Source.h"
#include "ppf/ASCIIHexSource.h"
#include "ppf/BinarySource.h"
#include "ppf/DCTSource.h"
#include "ppf/RunLengthSource.h"

namespace ppf
{
    namespace
    {
        /// Rows are pulled through the decoders in blocks of about this many bytes: in the second cache of every
        /// machine, and long against what a call costs.
        constexpr std::size_t blockBytes = 128u << 10;

        /// Bytes that a decoder makes of one at most.
        constexpr std::uint64_t ascii85Growth = 4;
        constexpr std::uint64_t runLengthGrowth = 64;
        /// A block of 64 pixels takes at least two bits where every code is the shortest; sampling factors stretch
        /// what a block covers up to eightfold. What a progressive picture adds to this the decoder's memory limits.
        constexpr std::uint64_t dctGrowth = std::uint64_t{64} * 4 * 8;

        std::uint64_t MostDecodedBytes(const Preview& preview)
        {
            const std::uint64_t encodingGrowth = preview.encoding == Encoding::ascii85 ? ascii85Growth : 1;
            const std::uint64_t compressionGrowth = preview.compression == Compression::runLength ? runLengthGrowth
                                                    : preview.compression == Compression::dct     ? dctGrowth
                                                                                                  : 1;
            return preview.data.size() * encodingGrowth * compressionGrowth;
        }

        std::unique_ptr<ByteSource> MakeEncodedSource(const EncodedText& data, Encoding encoding)
        {
            switch (encoding)
            {
            case Encoding::asciiHex:
                return std::make_unique<ASCIIHexSource>(data);
            case Encoding::ascii85:
                return std::make_unique<ASCII85Source>(data);
            default:
                return std::make_unique<BinarySource>(data);
            }
        }

        std::unique_ptr<ByteSource> MakeSource(const EncodedText& data, const Preview& preview)
        {
            std::unique_ptr<ByteSource> encoded = MakeEncodedSource(data, preview.encoding);
            switch (preview.compression)
            {
            case Compression::none:
                return encoded;
            case Compression::runLength:
                return std::make_unique<RunLengthSource>(std::move(encoded));
            case Compression::dct:
                if (preview.bitsPerComponent != 8)
                {
                    throw FormatError(preview.offset, "DCT data stands for 8 bits per component, not for 1");
                }
                return std::make_unique<DCTSource>(std::move(encoded), preview);
            default:
                throw FormatError(
                    preview.offset,
                    "compression /" + std::string(preview.compressionName) + " is none that this reader knows");
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
        constexpr std::array<Octet, 256> octets = MakeOctets();
    }

    ScanLineReader::ScanLineReader(const Document& document, const Preview& preview)
        : m_dataEnd(document.OffsetOf(preview.data) + preview.data.size())
        , m_height(preview.height)
        , m_storedRowBytes(static_cast<std::size_t>(preview.StoredRowBytes()))
        , m_isBilevel(preview.bitsPerComponent == 1)
        , m_isDct(preview.compression == Compression::dct)
        , m_source(MakeSource({preview.data, document.OffsetOf(preview.data), 0}, preview))
    {
        if (preview.StoredBytes() > MostDecodedBytes(preview))
        {
            throw FormatError(
                document.OffsetOf(preview.data),
                "preview of " + std::to_string(preview.width) + " x " + std::to_string(preview.height) +
                    " pixels has " + std::to_string(preview.data.size()) + " bytes of data, which cannot hold it");
        }
        const std::uint64_t rows = std::clamp<std::uint64_t>(blockBytes / preview.StoredRowBytes(), 1, m_height);
        m_block.resize(static_cast<std::size_t>(rows) * m_storedRowBytes);
        if (m_isBilevel)
        {
            m_expanded.resize(m_storedRowBytes * 8);
        }
    }

    ScanLineReader::~ScanLineReader() = default;

    unsigned char* ScanLineReader::Next()
    {
        if (m_rowsRead == m_height)
        {
            return nullptr;
        }
        if (m_next == m_end)
        {
            Refill();
        }
        unsigned char* const stored = m_block.data() + m_next;
        m_next += m_storedRowBytes;
        ++m_rowsRead;
        if (!m_isBilevel)
        {
            return stored;
        }
        Expand(stored);
        return m_expanded.data();
    }

    void ScanLineReader::Refill()
    {
        const std::uint64_t rows = std::min<std::uint64_t>(m_block.size() / m_storedRowBytes, m_height - m_rowsRead);
        const std::size_t wanted = static_cast<std::size_t>(rows) * m_storedRowBytes;
        const std::size_t got = m_source->Read(m_block.data(), wanted);
        m_next = 0;
        // Rows in front of a gap are delivered; the next call comes to it.
        m_end = got - got % m_storedRowBytes;
        if (m_end == 0)
        {
            throw FormatError(
                m_dataEnd,
                "preview's data ends in row " + std::to_string(m_rowsRead + 1) + " of " + std::to_string(m_height));
        }
    }

    void ScanLineReader::Expand(const unsigned char* stored)
    {
        for (std::size_t i = 0; i < m_storedRowBytes; ++i)
        {
            std::memcpy(m_expanded.data() + 8 * i, octets[stored[i]].data(), 8);
        }
    }

    std::uint64_t ScanLineReader::CountExcess()
    {
        std::uint64_t excess = 0;
        std::array<unsigned char, 4096> bytes = {};
        for (std::size_t got = bytes.size(); got == bytes.size() && !m_isDct; excess += got)
        {
            got = m_source->Read(bytes.data(), bytes.size());
        }
        return excess;
    }
}
