// What inks are called. It stands apart because names are the one thing in this layer that is text: what writers put into a
// TIFF for people, in three places and in several encodings.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace RasterFeed
{
    class TiffFile;

    /// The names of the inks of the image at which `file` stands, UTF-8, as many as there are `channels`; empty where there is
    /// none. `channels`: the samples that are inks, ascending and from 1, of `samples` samples of a pixel. Throws Refusal for
    /// names that are not all in the file or of more than 1024 bytes.
    std::vector<std::string>
    NamesOfInks(const TiffFile& file, std::uint32_t samples, const std::vector<std::uint32_t>& channels);
}
