#include "ppf/FileMap.h"

#include "ppf/Keywords.h"
#include "ppf/Scanner.h"

#include <cerrno>
#include <new>
#include <system_error>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Ppf
{
    namespace
    {
        class Descriptor
        {
        public:
            explicit Descriptor(const std::string& path)
                : number(open(path.c_str(), O_RDONLY | O_CLOEXEC))
            {
            }
            ~Descriptor()
            {
                if (number >= 0)
                {
                    close(number);
                }
            }
            Descriptor(const Descriptor&) = delete;
            Descriptor& operator=(const Descriptor&) = delete;

            int Number() const { return number; }

        private:
            int number;
        };

        [[noreturn]] void Fail(const std::string& path)
        {
            throw std::system_error(errno, std::generic_category(), path);
        }
    }

    FileMap::FileMap(const std::string& path)
    {
        const Descriptor file(path);
        struct stat status = {};
        if (file.Number() < 0 || fstat(file.Number(), &status) != 0)
        {
            Fail(path);
        }
        if (!S_ISREG(status.st_mode))
        {
            ReadStream(file.Number(), path);
            return;
        }
        const auto size = static_cast<std::size_t>(status.st_size);
        if (size == 0)
        {
            return;
        }
        void* address = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file.Number(), 0);
        if (address == MAP_FAILED)
        {
            Fail(path);
        }
        mapped = true;
        bytes = {static_cast<const char*>(address), size};
        // Advice only: a kernel that does not take it reads as well.
        madvise(address, size, MADV_SEQUENTIAL);
    }

    FileMap::~FileMap()
    {
        if (mapped)
        {
            munmap(const_cast<char*>(bytes.data()), bytes.size());
        }
    }

    void FileMap::MakeRoom(std::size_t size, const std::string& path)
    {
        try
        {
            copy.resize(size);
        }
        catch (const std::bad_alloc&)
        {
            throw std::system_error(ENOMEM, std::generic_category(), path + ": stream is too large for memory");
        }
    }

    void FileMap::ReadStream(int descriptor, const std::string& path)
    {
        constexpr std::size_t Block = 1 << 20;
        for (;;)
        {
            const std::size_t held = copy.size();
            // A stream that is something else may never end.
            if (held >= Word::Magic.size() && !StartsWith(copy, Word::Magic))
            {
                break;
            }
            MakeRoom(held + Block, path);
            const ssize_t got = read(descriptor, copy.data() + held, Block);
            copy.resize(held + static_cast<std::size_t>(got > 0 ? got : 0));
            if (got == 0)
            {
                break;
            }
            if (got < 0 && errno != EINTR)
            {
                Fail(path);
            }
        }
        bytes = copy;
    }
}
