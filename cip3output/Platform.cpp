// See Platform.h. Everything else in this folder is standard C++ and Boost.
#include "cip3output/Platform.h"

#include <WidePathLib.h>

#include <filesystem>
#include <locale>
#include <stdexcept>
#include <system_error>

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
            // A file that is empty stays as it is. One that was truncated ext4 writes out to the disk when it is closed, and a
            // program that asks for nothing to be brought there would wait for it.
            const std::filesystem::path file = std::filesystem::u8path(WideToUtf8(path));
            std::error_code unknown;
            const bool isEmpty = std::filesystem::file_size(file, unknown) == 0 && !unknown;
            stream.open(file, std::ios::binary | (isEmpty ? std::ios::app : std::ios::trunc));
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
