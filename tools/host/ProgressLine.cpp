#include "host/ProgressLine.h"

#include "host/Descriptor.h"
#include "host/Program.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <tuple>

namespace Host
{
    namespace
    {
        constexpr std::string_view TakeLineAway = "\r\x1b[K";
    }

    ProgressLine::~ProgressLine()
    {
        if (isShown)
        {
            std::ignore = WriteAll(terminal, TakeLineAway.data(), TakeLineAway.size());
        }
    }

    void ProgressLine::Show(std::string_view text) noexcept
    {
        std::array<char, 200> line{};
        const int size = std::snprintf(
            line.data(), line.size(), "\r%s: %.*s\x1b[K", ProgramName(), static_cast<int>(text.size()), text.data());
        std::ignore = WriteAll(terminal, line.data(), std::min(static_cast<std::size_t>(size), line.size() - 1));
        isShown = true;
    }
}
