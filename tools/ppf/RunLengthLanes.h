// Passing over run-length data without decoding it, several tokens at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace Ppf
{
    /// Where a walk through run-length data has come to.
    struct RunLengthPlace
    {
        /// Offset of a length byte.
        std::size_t at;
        /// Bytes that the tokens before it stand for.
        std::uint64_t passed;
    };

    /// Walks from the length byte at `begin` as far as is fast: past whole tokens that stand for fewer than `wanted`
    /// bytes in all, never past an end mark, and not to the end of `bytes`. The walk goes on from there token by token.
    RunLengthPlace PassTokens(std::string_view bytes, std::size_t begin, std::uint64_t wanted);
}
