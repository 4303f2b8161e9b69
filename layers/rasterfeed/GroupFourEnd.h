// The mark behind the last line of CCITT Group 4 data. libtiff takes it for a blank line when it comes too early: an image
// whose data lacks its last line would be read as if that were white. With the mark made invalid such a line is an
// error, and data that is whole never gets that far.
#pragma once

#include <cstddef>
#include <optional>

/// A byte of the data, and what stands there once the mark is invalid.
struct SpoiledByte
{
    std::size_t index;
    unsigned char value;
};

/// Finds the end mark in the last `count` bytes of a strip or tile, with nothing but zero bits behind it. `lowestFirst`: bits
/// are filled from the lowest up (FillOrder 2). Nothing if no mark is there: it may be left out.
std::optional<SpoiledByte> SpoilGroupFourEnd(const unsigned char* tail, std::size_t count, bool lowestFirst);

/// Bytes at the end of a strip or tile that are enough to find a mark in, with what pads it to a boundary.
constexpr std::size_t groupFourTailBytes = 32;
