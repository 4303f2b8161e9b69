// The pixels of one channel of an image as they are, line by line.
#pragma once

#include "rasterfeed/LineSource.h"
#include "rasterfeed/RowOrder.h"
#include "rasterfeed/SampleExpansion.h"

#include <memory>

namespace RasterFeed
{
    class ImageLines : public LineSource
    {
    public:
        /// `isMirrored`: lines run from right to left.
        ImageLines(RowOrder rows, const SeparationForm& form, bool isMirrored);

        void Next(unsigned char* line, std::size_t pitch) override;

    private:
        void PickChannel(unsigned char* line) const;

        RowOrder rows;
        SampleExpansion expansion;
        std::uint32_t width;
        unsigned samples; ///< of a pixel
        unsigned sample;
        bool isMirrored;
        std::unique_ptr<unsigned char[]> packedRow;   ///< holds a row that cannot be decoded into its line
        std::unique_ptr<unsigned char[]> allChannels; ///< holds the bytes of a row of several channels
    };
}
