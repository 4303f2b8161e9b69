// The bytes of a file, mapped into memory. Apart from the rest because it is the reader's only contact with the
// operating system: everything else works on bytes, wherever they lie.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Ppf
{
    /// A whole file as bytes. A regular file is mapped, read only and with its size taken once, when it is opened;
    /// anything else (a pipe, a device) is read to its end into memory, or no further than its beginning if no print
    /// production file begins so.
    ///
    /// Bytes that a regular file loses while it is mapped raise SIGBUS when they are touched, as with any mapping.
    class FileMap
    {
    public:
        /// Throws std::system_error, whose text begins with the path, if the file cannot be opened or read.
        explicit FileMap(const std::string& path);
        ~FileMap();
        FileMap(const FileMap&) = delete;
        FileMap& operator=(const FileMap&) = delete;

        /// Valid as long as this object lives.
        std::string_view Bytes() const { return bytes; }

    private:
        void MakeRoom(std::size_t size, const std::string& path);
        void ReadStream(int descriptor, const std::string& path);

        std::string_view bytes;
        std::string copy;
        bool mapped = false;
    };
}
