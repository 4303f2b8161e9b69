// Where the data of a preview image ends. Apart from the decoders because it has to be known for every preview of a
// file, also where nobody asks for the picture, and can be found at the speed of a search for one byte.
#pragma once

#include "ppf/Document.h"

#include <cstdint>
#include <string_view>

namespace Ppf
{
    /// Finds the data of a file's preview images. Over the calls for all of them every byte is looked at a bounded number
    /// of times, whatever a damaged file claims.
    class DataFinder
    {
    public:
        explicit DataFinder(std::string_view theBytes)
            : bytes(theBytes)
        {
        }

        /// The encoded data of the preview whose word CIP3PreviewImage ends at `begin`, with its end mark. Where text
        /// or uncompressed data does not lead to the end of its section, the section's end word limits it, and
        /// decoding it will fail or give another size than the preview has. Throws FormatError if the data cannot be
        /// told from what follows.
        std::string_view Find(std::uint64_t begin, const Preview& preview);

    private:
        /// Where binary data ends, and whether what it stands for has the preview's size.
        struct DataEnd
        {
            std::size_t at;
            bool hasSize;
        };

        DataEnd BinaryEnd(std::size_t begin, const Preview& preview);
        DataEnd RunLengthEnd(std::size_t begin, const Preview& preview) const;
        std::size_t DctEnd(std::size_t begin) const;
        std::size_t TextEnd(std::size_t begin, std::string_view mark) const;
        std::size_t EndBySection(std::size_t begin) const;
        bool SectionEndsAfter(std::size_t end) const;
        std::size_t SkipWhiteSpace(std::size_t begin, std::size_t most) const;

        std::string_view bytes;
        /// Bytes that walks through run-length data have passed over so far.
        std::uint64_t walked = 0;
    };
}
