// See Platform.h. Everything else in this folder is standard C++ and Boost.
#include "cip3output/Platform.h"

#include <WidePathLib.h>

#include <filesystem>
#include <locale>
#include <stdexcept>

#ifdef __linux__
#include <sys/mman.h>
#endif

namespace RasterOutput::Platform
{
    void OpenOutputFile(std::ofstream& stream, const std::wstring& path)
    {
        // A name ends at its first zero, so a path with one inside would open some other file.
        if (path.find(L'\0') != std::wstring::npos)
        {
            return;
        }
        // The host may have set a global locale that converts characters.
        stream.imbue(std::locale::classic());
        stream.rdbuf()->pubsetbuf(nullptr, 0);
        try
        {
            stream.open(std::filesystem::u8path(WideToUtf8(path)), std::ios::binary | std::ios::trunc);
        }
        catch (const std::range_error&)
        {
            // The path names no file that could exist; the stream stays closed.
        }
    }

    void AdviseLargePages(void* begin, std::size_t size) noexcept
    {
#ifdef __linux__
        madvise(begin, size, MADV_HUGEPAGE);
#else
        static_cast<void>(begin);
        static_cast<void>(size);
#endif
    }
}
