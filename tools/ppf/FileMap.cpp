// mmap for regular files, read for everything else.
#include "ppf/FileMap.h"

#include <cerrno>
#include <new>
#include <system_error>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include "ppf/Keywords.h"
#include "ppf/Scanner.h"

namespace ppf
{
    namespace
    {
        class Descriptor
        {
        public:
            explicit Descriptor(const std::string& path)
                : m_number(open(path.c_str(), O_RDONLY | O_CLOEXEC))
            {
            }
            ~Descriptor()
            {
                if (m_number >= 0)
                {
                    close(m_number);
                }
            }
            Descriptor(const Descriptor&) = delete;
            Descriptor& operator=(const Descriptor&) = delete;

            int Number() const { return m_number; }

        private:
            int m_number;
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
        m_mapped = true;
        m_bytes = {static_cast<const char*>(address), size};
        // Advice only: a kernel that does not take it reads as well.
        madvise(address, size, MADV_SEQUENTIAL);
    }

    FileMap::~FileMap()
    {
        if (m_mapped)
        {
            munmap(const_cast<char*>(m_bytes.data()), m_bytes.size());
        }
    }

    void FileMap::MakeRoom(std::size_t size, const std::string& path)
    {
        try
        {
            m_copy.resize(size);
        }
        catch (const std::bad_alloc&)
        {
            throw std::system_error(ENOMEM, std::generic_category(), path + ": stream is too large for memory");
        }
    }

    void FileMap::ReadStream(int descriptor, const std::string& path)
    {
        constexpr std::size_t block = 1 << 20;
        for (;;)
        {
            const std::size_t held = m_copy.size();
            // A stream that is something else may never end.
            if (held >= word::magic.size() && !StartsWith(m_copy, word::magic))
            {
                break;
            }
            MakeRoom(held + block, path);
            const ssize_t got = read(descriptor, m_copy.data() + held, block);
            m_copy.resize(held + static_cast<std::size_t>(got > 0 ? got : 0));
            if (got == 0)
            {
                break;
            }
            if (got < 0 && errno != EINTR)
            {
                Fail(path);
            }
        }
        m_bytes = m_copy;
    }
}
