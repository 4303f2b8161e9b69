// The ASCII85Decode filter: five characters "!" to "u" to four bytes, "z" to four zero bytes, white space anywhere, up
// to "~>", and "<~" before it all if the writer put it there.
#pragma once

#include "ppf/ByteSource.h"

#include <array>

namespace Ppf
{
    class ASCII85Source : public ByteSource
    {
    public:
        explicit ASCII85Source(const EncodedText& theData);

        std::size_t Read(unsigned char* out, std::size_t count) override;
        std::uint64_t Offset() const override { return data.Offset(); }

    private:
        std::size_t ReadWholeGroups(unsigned char* out, std::size_t count);
        void ReadGroup();
        void Store(std::uint64_t value, unsigned bytes);

        EncodedText data;
        /// A decoded group of which `out` could not take all.
        std::array<unsigned char, 4> group = {};
        unsigned groupNext = 0;
        unsigned groupEnd = 0;
        bool ended = false;
    };
}
