// Throwing the library's own failures.
#pragma once

#include <cstdint>
#include <string>

namespace KxTypes
{
    /// Throws a KX_EException with `message`, prepared with `line` and `file`.
    [[noreturn]] void ThrowFailure(const std::string& message, std::uint32_t line, const char* file);
}
