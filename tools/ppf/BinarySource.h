// Preview data without an encoding: the bytes as they are in the file.
#pragma once

#include "ppf/ByteSource.h"

namespace Ppf
{
    class BinarySource : public ByteSource
    {
    public:
        explicit BinarySource(const EncodedText& theData)
            : data(theData)
        {
        }

        std::size_t Read(unsigned char* out, std::size_t count) override;
        std::uint64_t Offset() const override { return data.Offset(); }

    private:
        EncodedText data;
    };
}
