// The RunLengthDecode filter: literal and repeat runs to bytes, up to the length byte 128.
#pragma once

#include <vector>

#include "ppf/ByteSource.h"

namespace ppf
{
    class RunLengthSource : public ByteSource
    {
    public:
        explicit RunLengthSource(std::unique_ptr<ByteSource> encoded);

        std::size_t Read(unsigned char* out, std::size_t count) override;
        std::uint64_t Offset() const override { return m_encoded->Offset(); }

    private:
        std::size_t ReadWholeRuns(unsigned char* out, std::size_t count);
        bool BeginRun();
        bool Refill();

        std::unique_ptr<ByteSource> m_encoded;
        /// Encoded bytes that are not yet expanded: from m_next to m_end.
        std::vector<unsigned char> m_block;
        std::size_t m_next = 0;
        std::size_t m_end = 0;
        /// What is left of a run of which `out` could not take all.
        std::size_t m_runLeft = 0;
        bool m_runIsLiteral = false;
        bool m_ended = false;
    };
}
