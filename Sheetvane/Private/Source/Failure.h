// Throwing the converter's failures, always in the same form, and the place in the source that they name.
#pragma once

#include <cstdint>

namespace Sheetvane
{
    /// The source unit that failures and checked casts name as their file.
    constexpr char SourceUnit[] = "Sheetvane/Private/Source/Sheetvane";

    /// Throws a KX_ECIP3Exception with `text` (zero-terminated, copied), prepared with the line of the caller's
    /// statement. Throws std::bad_alloc in its place if memory is exhausted.
    [[noreturn]] void ThrowFailure(const char* text, std::uint32_t line);
}
