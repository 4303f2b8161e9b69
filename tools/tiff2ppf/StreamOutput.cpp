#include "tiff2ppf/StreamOutput.h"

#include <array>
#include <cerrno>
#include <cstdlib>

#include <fcntl.h>
#include <unistd.h>

namespace Tiff2Ppf
{
    namespace
    {
        std::string TemporaryFolder()
        {
            const char* const chosen = std::getenv("TMPDIR");
            return chosen != nullptr && chosen[0] == '/' ? chosen : "/tmp";
        }

        /// Writes all of `size` bytes at `bytes`. False on failure, and errno says why.
        bool WriteAll(int file, const char* bytes, std::size_t size)
        {
            while (size > 0)
            {
                const ssize_t written = write(file, bytes, size);
                if (written < 0 && errno != EINTR)
                {
                    return false;
                }
                if (written > 0)
                {
                    bytes += written;
                    size -= static_cast<std::size_t>(written);
                }
            }
            return true;
        }
    }

    StreamOutput::StreamOutput(const std::string& theName, int theStream)
        : Output(theName, TemporaryFolder())
        , stream(theStream)
    {
        if (!work.Create())
        {
            Fail("no temporary file can be made in " + TemporaryFolder());
        }
    }

    void StreamOutput::Publish()
    {
        const Descriptor finished(open(work.Path().c_str(), O_RDONLY | O_CLOEXEC));
        if (!finished.IsOpen())
        {
            Fail("the temporary file cannot be read");
        }
        std::array<char, 65536> buffer{};
        ssize_t size = 0;
        while ((size = read(finished.Number(), buffer.data(), buffer.size())) > 0)
        {
            if (!WriteAll(stream.Number(), buffer.data(), static_cast<std::size_t>(size)))
            {
                Fail("the output cannot be written");
            }
        }
        if (size < 0)
        {
            Fail("the temporary file cannot be read");
        }
    }
}
