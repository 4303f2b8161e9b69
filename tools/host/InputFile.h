// The bytes of a file that is looked at as a whole.
#pragma once

#include <string>
#include <string_view>

namespace Host
{
    /// A regular file is mapped, read only and with its size taken once, when it is opened; what a pipe or a device gives is
    /// read to its end into memory. Bytes that a regular file loses while it is mapped raise SIGBUS when they are touched,
    /// which HandleSignals turns into an error line.
    class InputFile
    {
    public:
        /// A stream that does not begin with `begin` is read no further than that shows, as it may never end. Throws
        /// Failure, the path and the reason, if the file cannot be opened or read.
        InputFile(const std::string& path, std::string_view begin);
        ~InputFile();
        InputFile(const InputFile&) = delete;
        InputFile& operator=(const InputFile&) = delete;

        /// Valid as long as this object lives.
        std::string_view Bytes() const { return bytes; }

    private:
        std::string_view bytes;
        std::string copy;
        bool isMapped = false;
    };
}
