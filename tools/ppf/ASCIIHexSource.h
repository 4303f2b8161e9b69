// The ASCIIHexDecode filter: two hexadecimal digits of either case to a byte, white space anywhere, up to ">".
#pragma once

#include "ppf/ByteSource.h"

namespace ppf
{
    class ASCIIHexSource : public ByteSource
    {
    public:
        explicit ASCIIHexSource(const EncodedText& data)
            : m_data(data)
        {
        }

        std::size_t Read(unsigned char* out, std::size_t count) override;
        std::uint64_t Offset() const override { return m_data.Offset(); }

    private:
        bool ReadDigit(unsigned& digit);

        EncodedText m_data;
        bool m_ended = false;
    };
}
