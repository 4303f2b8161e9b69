// The length byte of run-length data, read by the decoder and by the search for the end of the data.
#pragma once

#include <cstdint>

namespace ppf
{
    /// A length byte other than the end mark. Which kind of run comes next is noise to a branch predictor, so all of
    /// this is arithmetic with masks.
    class RunLengthToken
    {
    public:
        explicit RunLengthToken(unsigned char length)
            : m_length(length)
            , m_ofRepeat(0u - (length >> 7))
        {
        }

        /// Bytes that it stands for, 1 to 128: one more than the length byte of a literal run, 257 less that of a repeat
        /// run, which is the same of its complement.
        unsigned Run() const { return (m_length ^ m_ofRepeat) + 1 + (m_ofRepeat & 257); }

        /// Bytes behind it: those of a literal run, or the one that is repeated.
        unsigned DataBytes() const { return 1 + (m_length & ~m_ofRepeat); }

        bool IsLiteral() const { return m_ofRepeat == 0; }

        /// Every bit set for a literal run, none for a repeat run.
        std::uint64_t LiteralMask() const { return ~static_cast<std::uint64_t>(static_cast<std::int32_t>(m_ofRepeat)); }

    private:
        std::uint32_t m_length;
        /// Every bit set for a repeat run, none for a literal run.
        std::uint32_t m_ofRepeat;
    };
}
