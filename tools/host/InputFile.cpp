#include "host/InputFile.h"

#include "host/Descriptor.h"
#include "host/Failure.h"
#include "host/Text.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Host
{
    namespace
    {
        [[noreturn]] void Fail(const std::string& path)
        {
            throw Failure(path + ": " + SystemText(errno));
        }
    }

    InputFile::InputFile(const std::string& path, std::string_view begin)
    {
        const Descriptor file(Uninterrupted([&] { return open(path.c_str(), O_RDONLY | O_CLOEXEC); }));
        struct stat status = {};
        if (!file.IsOpen() || fstat(file.Number(), &status) != 0)
        {
            Fail(path);
        }
        if (S_ISREG(status.st_mode))
        {
            const auto size = static_cast<std::size_t>(status.st_size);
            if (size == 0)
            {
                return;
            }
            void* const address = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file.Number(), 0);
            if (address == MAP_FAILED)
            {
                Fail(path);
            }
            isMapped = true;
            bytes = {static_cast<const char*>(address), size};
            return;
        }
        constexpr std::size_t Block = 1 << 20;
        ssize_t got = Block;
        while (got == Block && (copy.empty() || copy.compare(0, begin.size(), begin) == 0))
        {
            const std::size_t held = copy.size();
            copy.resize(held + Block);
            got = ReadAll(file.Number(), copy.data() + held, Block);
            if (got < 0)
            {
                Fail(path);
            }
            copy.resize(held + static_cast<std::size_t>(got));
        }
        bytes = copy;
    }

    InputFile::~InputFile()
    {
        if (isMapped)
        {
            munmap(const_cast<char*>(bytes.data()), bytes.size());
        }
    }
}
