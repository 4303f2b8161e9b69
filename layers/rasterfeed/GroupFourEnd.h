// The end of CCITT Group 4 data: the end mark, or zeros that fill up the last byte. libtiff takes either for blank lines when
// it meets them early, so that an image whose data lacks its last lines, or whose file was filled up with zeros, would be
// read as if those lines were white. With one bit of the end made invalid such a line is an error, and data that is whole
// never gets that far.
#pragma once

#include <cstddef>
#include <optional>

/// A byte of the data, and what stands there once the end is invalid.
struct SpoiledByte
{
    std::size_t index;
    unsigned char value;
};

/// What has to be seen of a strip or tile: up to this many bytes that end with its last that is not zero, and up to so many
/// zeros behind it.
constexpr std::size_t groupFourLastBytes = 8;
constexpr std::size_t groupFourZerosBehind = 2;

/// Finds the byte to spoil in `tail`, the `count` bytes around the end of the data. `lowestFirst`: bits are filled from the
/// lowest up (FillOrder 2). Nothing if libtiff notices the end by itself.
std::optional<SpoiledByte> SpoilGroupFourEnd(const unsigned char* tail, std::size_t count, bool lowestFirst);
