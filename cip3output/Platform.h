// The painter's two dealings with the operating system: a file opened by its wide name, and advice on memory.
#pragma once

#include <cstddef>
#include <fstream>
#include <string>

namespace RasterOutput::Platform
{
    /// Opens `stream` for binary output to the file at `path`, which is created or truncated. The stream translates
    /// nothing, whatever the global locale, and passes what is written straight on, so write in large pieces. A stream
    /// that is not open afterwards says that there can be no such file.
    void OpenOutputFile(std::ofstream& stream, const std::wstring& path);

    /// Size and alignment of a large page, in bytes.
    constexpr std::size_t LargePageSize = std::size_t{2} << 20;

    /// Tells the system that the LargePageSize bytes from `begin` on, so aligned, will be filled: it may hand them out as
    /// one large page, which costs a fraction of the small ones to touch. Advice only: never fails.
    void AdviseLargePage(void* begin) noexcept;
}
