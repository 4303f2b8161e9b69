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

    /// Tells the system that the `size` bytes from `begin` on will be filled from front to back: it may hand them out in
    /// large pages. Advice only: never fails.
    void AdviseLargePages(void* begin, std::size_t size) noexcept;
}
