// The ASCIIHexDecode filter: two hexadecimal digits of either case to a byte, white space anywhere, up to ">".
#pragma once

#include "ppf/ByteSource.h"

namespace Ppf
{
    class ASCIIHexSource : public ByteSource
    {
    public:
        explicit ASCIIHexSource(const EncodedText& theData)
            : data(theData)
        {
        }

        std::size_t Read(unsigned char* out, std::size_t count) override;
        std::uint64_t Offset() const override { return data.Offset(); }

    private:
        bool ReadDigit(unsigned& digit);

        EncodedText data;
        bool ended = false;
    };
}
