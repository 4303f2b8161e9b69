// The length byte of run-length data, read by the decoder and by the searches for the end of the data.
#pragma once

#include <cstdint>

namespace Ppf
{
    /// A length byte other than the end mark. Which kind of run comes next is noise to a branch predictor, so all of
    /// this is arithmetic with masks, and what leads to the next token takes the fewest steps.
    class RunLengthToken
    {
    public:
        constexpr explicit RunLengthToken(unsigned char theLength)
            : length(theLength)
            , ofLiteral(static_cast<std::uint64_t>(theLength >> 7) - 1)
        {
        }

        /// Bytes that it stands for, 1 to 128: one more than the length byte of a literal run, 257 less that of a repeat
        /// run, which is the same of its complement.
        constexpr std::uint64_t Run() const { return (length ^ ~ofLiteral) + 1 + (~ofLiteral & 257); }

        /// Bytes after it: those of a literal run, or the one that is repeated.
        constexpr std::uint64_t DataBytes() const { return 1 + (length & ofLiteral); }

        bool IsLiteral() const { return ofLiteral != 0; }

        /// Every bit set for a literal run, none for a repeat run.
        std::uint64_t LiteralMask() const { return ofLiteral; }

    private:
        std::uint64_t length;
        std::uint64_t ofLiteral;
    };
}
