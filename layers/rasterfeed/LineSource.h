// The lines of a view, in their order. The interface stands apart so that the reader does not care whether a view is read,
// reduced or held.
#pragma once

#include <cstddef>

namespace RasterFeed
{
    class LineSource
    {
    public:
        virtual ~LineSource() = default;

        /// Writes the next line, one byte for each pixel, 0 being ink; of a source of several channels one line for each,
        /// `pitch` bytes after each other. Throws Refusal for data that ends early or cannot be decoded, and what the
        /// callbacks throw.
        virtual void Next(unsigned char* line, std::size_t pitch) = 0;
    };
}
