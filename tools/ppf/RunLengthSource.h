// The RunLengthDecode filter: literal and repeat runs to bytes, up to the length byte 128.
#pragma once

#include "ppf/ByteSource.h"

#include <vector>

namespace Ppf
{
    class RunLengthSource : public ByteSource
    {
    public:
        explicit RunLengthSource(std::unique_ptr<ByteSource> theEncoded);

        std::size_t Read(unsigned char* out, std::size_t count) override;
        std::uint64_t Offset() const override { return encoded->Offset(); }

    private:
        std::size_t ReadWholeRuns(unsigned char* out, std::size_t count);
        bool BeginRun();
        bool Refill();

        std::unique_ptr<ByteSource> encoded;
        /// Encoded bytes that are not yet expanded: from next to end.
        std::vector<unsigned char> block;
        std::size_t next = 0;
        std::size_t end = 0;
        /// What is left of a run of which `out` could not take all.
        std::size_t runLeft = 0;
        bool runIsLiteral = false;
        bool ended = false;
    };
}
