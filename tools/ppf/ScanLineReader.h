// The rows of a preview image, one at a time. Apart from the decoders because it knows what a preview says of itself:
// which decoders to chain, how wide a row is, and how much its data can hold at most.
#pragma once

#include "ppf/ByteSource.h"
#include "ppf/Document.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace Ppf
{
    /// Reads rows as they are stored, the first in the file first: Next* up to null, then CountExcess if wanted.
    class ScanLineReader
    {
    public:
        /// Throws FormatError if the preview's width and height ask for more than its data can hold at all, or its
        /// compression is not known; so the memory taken is in proportion to the data.
        ScanLineReader(const Document& document, const Preview& preview);
        ~ScanLineReader();

        /// The next row, a byte per component and pixel, interleaved, 0 no ink to 255 full ink; null after the last.
        /// The bytes may be changed and are valid up to the next call. Throws FormatError if the data is damaged or
        /// ends before the last row.
        unsigned char* Next();

        /// Reads what the data holds after the last row. Returns its size in bytes, 0 as a rule. Throws FormatError.
        std::uint64_t CountExcess();

    private:
        void Refill();
        void Expand(const unsigned char* stored);

        std::uint64_t dataEnd;
        std::uint64_t height;
        std::uint64_t rowsRead = 0;
        std::size_t storedRowBytes;
        bool isBilevel;
        bool isDct;
        std::unique_ptr<ByteSource> source;
        /// As many stored rows as one pull through the decoders brings.
        std::vector<unsigned char> block;
        std::size_t next = 0;
        std::size_t end = 0;
        /// The row with a byte per component, for images of 1 bit.
        std::vector<unsigned char> expanded;
    };
}
