// Bilevel rows to bytes. It stands apart from the other depths because at a plate's resolution it is most of the work: the
// line is eight times as long as the row, and Group 4 decodes a page of text as fast as a table expands it.
#pragma once

#include <cstddef>

namespace RasterFeed
{
    /// Writes a byte to `line` for each of `samples` bits of `row`, from the highest bit of its first byte on: `flip`, 0 or 255,
    /// for a zero bit, and the other of the two for a one. With the widest vectors that the machine has. Never throws.
    void ExpandBilevelRow(const unsigned char* row, std::size_t samples, unsigned char flip, unsigned char* line);
}
