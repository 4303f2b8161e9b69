// The ASCII85Decode filter: five characters "!" to "u" to four bytes, "z" to four zero bytes, white space anywhere, up
// to "~>", and "<~" in front of it all if the writer put it there.
#pragma once

#include <array>

#include "ppf/ByteSource.h"

namespace ppf
{
    class ASCII85Source : public ByteSource
    {
    public:
        explicit ASCII85Source(const EncodedText& data);

        std::size_t Read(unsigned char* out, std::size_t count) override;
        std::uint64_t Offset() const override { return m_data.Offset(); }

    private:
        std::size_t ReadWholeGroups(unsigned char* out, std::size_t count);
        void ReadGroup();
        void Store(std::uint64_t value, unsigned bytes);

        EncodedText m_data;
        /// A decoded group of which `out` could not take all.
        std::array<unsigned char, 4> m_group = {};
        unsigned m_groupNext = 0;
        unsigned m_groupEnd = 0;
        bool m_ended = false;
    };
}
