// The DCTDecode filter: JPEG data to rows of samples, through libjpeg.
#pragma once

#include "ppf/ByteSource.h"
#include "ppf/Document.h"

namespace Ppf
{
    /// Delivers whole rows: `count` of Read has to be a multiple of the preview's row size.
    class DCTSource : public ByteSource
    {
    public:
        DCTSource(std::unique_ptr<ByteSource> encoded, const Preview& preview);
        ~DCTSource() override;

        /// Throws FormatError also if the picture's size or number of components is not that of the preview.
        std::size_t Read(unsigned char* out, std::size_t count) override;
        std::uint64_t Offset() const override;

    private:
        class Decoder;
        std::unique_ptr<Decoder> decoder;
    };
}
