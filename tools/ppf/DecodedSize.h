// What the data of a preview stands for, counted without making pixels of it. Apart from the decoders because a check of
// a file that was just written has to cost little beside the writing.
#pragma once

#include "ppf/Document.h"

#include <cstdint>

namespace Ppf
{
    struct DecodedSize
    {
        std::uint64_t bytes = 0;
        /// Of run-length data: its end mark is there, and so many bytes stand after it.
        bool hasEndMark = false;
        std::uint64_t bytesAfterMark = 0;
    };

    /// Reads all data of a preview that is uncompressed or run-length data. Throws FormatError if it cannot be decoded.
    DecodedSize CountDecoded(const Document& document, const Preview& preview);
}
