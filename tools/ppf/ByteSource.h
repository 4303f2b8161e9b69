// The shape of all decoders of preview data: bytes are pulled through a chain, from the encoded text in the file to the
// rows of the image. A chain is at most an encoding, a compression and the reader of rows.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

namespace Ppf
{
    class ByteSource
    {
    public:
        ByteSource() = default;
        virtual ~ByteSource() = default;
        ByteSource(const ByteSource&) = delete;
        ByteSource& operator=(const ByteSource&) = delete;

        /// Puts the next decoded bytes into `out`. Returns their number, which is below `count` only at the end of the
        /// data. Throws FormatError at data that cannot be decoded.
        virtual std::size_t Read(unsigned char* out, std::size_t count) = 0;

        /// Offset in the file of the next encoded byte, close enough to say what a finding is about.
        virtual std::uint64_t Offset() const = 0;
    };

    /// Where a decoder of encoded text stands: the text, its place in the file and how far it is read.
    struct EncodedText
    {
        std::string_view bytes;
        /// Offset in the file of the first byte.
        std::uint64_t offset = 0;
        std::size_t next = 0;

        std::uint64_t Offset() const { return offset + next; }
    };
}
