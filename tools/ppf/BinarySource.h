// Preview data without an encoding: the bytes as they are in the file.
#pragma once

#include "ppf/ByteSource.h"

namespace ppf
{
    class BinarySource : public ByteSource
    {
    public:
        explicit BinarySource(const EncodedText& data)
            : m_data(data)
        {
        }

        std::size_t Read(unsigned char* out, std::size_t count) override;
        std::uint64_t Offset() const override { return m_data.Offset(); }

    private:
        EncodedText m_data;
    };
}
