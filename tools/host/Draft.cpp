#include "host/Draft.h"

#include "host/Failure.h"
#include "host/Signals.h"
#include "host/Sync.h"
#include "host/Text.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <string_view>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Host
{
    namespace
    {
        constexpr std::string_view Prefix = ".sheetvane-";

        /// Writes a new name to `name`: short, as one that is derived from that of the output could be too long where the
        /// output's is not; and not to be guessed, so that nobody can have a link waiting there.
        void ChooseName(std::array<char, 32>& name)
        {
            constexpr char Digits[] = "0123456789abcdef";
            std::array<unsigned char, 8> random{};
            if (getentropy(random.data(), random.size()) != 0)
            {
                throw Failure("the system has no random numbers for the name of a file: " + SystemText(errno));
            }
            char* next = std::copy(Prefix.begin(), Prefix.end(), name.begin());
            for (const unsigned char byte : random)
            {
                *next++ = Digits[byte >> 4U];
                *next++ = Digits[byte & 0x0FU];
            }
            *next = '\0';
        }
    }

    Draft::Draft(const std::string& folder, mode_t mode)
        : openFolder(Uninterrupted([&] { return open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC); }))
    {
        if (!openFolder.IsOpen())
        {
            throw Failure("no file can be made in the folder " + folder + ": " + SystemText(errno));
        }
        ChooseName(name);
        RemoveOnSignal(openFolder.Number(), name.data());
        constexpr int Flags = O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
        file = Descriptor(Uninterrupted([&] { return openat(openFolder.Number(), name.data(), Flags, mode); }));
        if (!file.IsOpen())
        {
            const int problem = errno;
            ForgetDraft();
            throw Failure("no file can be made in the folder " + folder + ": " + SystemText(problem));
        }
        hasName = true;
    }

    Draft::~Draft()
    {
        Unlink();
    }

    std::string Draft::Path() const
    {
        return "/proc/self/fd/" + std::to_string(file.Number());
    }

    void Draft::Unlink()
    {
        if (hasName)
        {
            unlinkat(openFolder.Number(), name.data(), 0);
            ForgetDraft();
            hasName = false;
        }
    }

    void Draft::MoveTo(const std::string& finalName, bool toDisk)
    {
        if (toDisk && !SyncFile(file.Number()))
        {
            throw Failure("the file cannot be brought to the disk: " + SystemText(errno));
        }
        if (!toDisk)
        {
            ReserveSpace(file.Number());
        }
        if (!file.Close())
        {
            throw Failure("the file cannot be written: " + SystemText(errno));
        }
        if (renameat(openFolder.Number(), name.data(), openFolder.Number(), finalName.c_str()) != 0)
        {
            throw Failure("the file is good but cannot be put in its place: " + SystemText(errno));
        }
        ForgetDraft();
        hasName = false;
        if (toDisk && !SyncFolder(openFolder.Number(), "."))
        {
            throw Failure("the file is in its place, but its name cannot be brought to the disk: " + SystemText(errno));
        }
    }
}
