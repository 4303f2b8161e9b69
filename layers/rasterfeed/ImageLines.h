// The pixels of an image as they are, line by line.
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

        void Next(unsigned char* line) override;

    private:
        RowOrder rows;
        SampleExpansion expansion;
        std::unique_ptr<unsigned char[]> packedRow; ///< holds a row that cannot be decoded into its line
    };
}
