#include "host/Output.h"

#include "host/Failure.h"
#include "host/Paths.h"
#include "host/Text.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <tuple>

#include <fcntl.h>
#include <unistd.h>

namespace Host
{
    namespace
    {
        constexpr mode_t OwnerOnly = S_IRUSR | S_IWUSR;
        constexpr mode_t AsAnyNewFile = OwnerOnly | S_IRGRP | S_IWGRP | S_IROTH | S_IWOTH;

        bool IsStandardOutput(const struct stat& status)
        {
            struct stat standard = {};
            return fstat(STDOUT_FILENO, &standard) == 0 && standard.st_dev == status.st_dev &&
                   standard.st_ino == status.st_ino;
        }
    }

    Output::Output(const std::string& place, Durability theDurability)
        : name(place == "-" ? "standard output" : place)
        , durability(theDurability)
    {
        struct stat status = {};
        const bool isDash = place == "-";
        if ((isDash ? fstat(STDOUT_FILENO, &status) : stat(place.c_str(), &status)) != 0)
        {
            if (isDash || errno != ENOENT)
            {
                Fail(SystemText(errno));
            }
            ChooseFile(place);
        }
        else if (S_ISREG(status.st_mode) && !IsStandardOutput(status))
        {
            replaced = status;
            ChooseFile(place);
        }
        else
        {
            ChooseStream(place, status);
        }
    }

    Output::~Output() = default;

    void Output::ChooseFile(const std::string& place)
    {
        path = EndOfLinks(place);
        if (NameIn(path).empty())
        {
            Fail(SystemText(EISDIR));
        }
        if (replaced && access(path.c_str(), W_OK) != 0)
        {
            Fail(SystemText(errno));
        }
        const std::string folder = FolderOf(path);
        try
        {
            MakeFolders(folder, durability == Durability::OnDisk);
            // What replaces a file is open to nobody else while it is written.
            draft.emplace(folder, replaced ? OwnerOnly : AsAnyNewFile);
        }
        catch (const Failure& failure)
        {
            Fail(failure.what());
        }
    }

    void Output::ChooseStream(const std::string& place, const struct stat& status)
    {
        if (S_ISDIR(status.st_mode))
        {
            Fail(SystemText(EISDIR));
        }
        // A descriptor that is open already is used as it is, so that what went there before stays.
        stream = Descriptor(
            IsStandardOutput(status)
                ? fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 0)
                : Uninterrupted([&] { return open(place.c_str(), O_WRONLY | O_NOCTTY | O_CLOEXEC); }));
        if (!stream.IsOpen())
        {
            Fail(SystemText(errno));
        }
        draft.emplace(TemporaryFolder(), OwnerOnly);
        draft->Unlink();
    }

    std::ostream& Output::Stream()
    {
        if (!writer)
        {
            writer.emplace(draft->Number());
        }
        return *writer;
    }

    void Output::Publish()
    {
        if (writer)
        {
            writer->Finish(name);
        }
        if (stream.IsOpen())
        {
            CopyToStream();
            return;
        }
        try
        {
            if (replaced)
            {
                TakeOverPermissions();
            }
            draft->MoveTo(NameIn(path), durability == Durability::OnDisk);
        }
        catch (const Failure& failure)
        {
            Fail(failure.what());
        }
    }

    void Output::TakeOverPermissions() const
    {
        const int file = draft->Number();
        // A group that cannot be kept must not hand its rights to the one that stands in its place.
        constexpr uid_t SameUser = static_cast<uid_t>(-1);
        constexpr gid_t SameGroup = static_cast<gid_t>(-1);
        std::ignore = fchown(file, replaced->st_uid, SameGroup); // only root can give a file away
        const bool isGroupKept = fchown(file, SameUser, replaced->st_gid) == 0;
        const mode_t kept = S_IRWXU | S_IRWXO | (isGroupKept ? S_IRWXG : 0U);
        if (fchmod(file, replaced->st_mode & kept) != 0)
        {
            throw Failure("the permissions cannot be kept: " + SystemText(errno));
        }
    }

    void Output::CopyToStream()
    {
        struct stat finished = {};
        if (fstat(draft->Number(), &finished) != 0 || lseek(draft->Number(), 0, SEEK_SET) != 0)
        {
            Fail("the temporary file cannot be read: " + SystemText(errno));
        }
        std::array<char, 65536> buffer{};
        for (auto left = static_cast<std::uint64_t>(finished.st_size); left > 0;)
        {
            const ssize_t size = ReadAll(draft->Number(), buffer.data(), std::min<std::uint64_t>(buffer.size(), left));
            if (size <= 0)
            {
                const std::string why = size < 0 ? SystemText(errno) : "it has become shorter";
                Fail("the temporary file cannot be read: " + why + "; what was written is not whole");
            }
            if (!WriteAll(stream.Number(), buffer.data(), static_cast<std::size_t>(size)))
            {
                Fail(SystemText(errno) + "; what was written is not whole");
            }
            left -= static_cast<std::uint64_t>(size);
        }
        if (!stream.Close())
        {
            Fail(SystemText(errno) + "; what was written is not whole");
        }
    }

    std::string Output::ObstacleToWriting() const
    {
        // A full disk may take a part of this, and then refuses the next.
        const std::array<char, 65536> filling{};
        if (lseek(File(), 0, SEEK_END) < 0)
        {
            return SystemText(errno);
        }
        for (int i = 0; i < 2; ++i)
        {
            if (!WriteAll(File(), filling.data(), filling.size()))
            {
                return SystemText(errno);
            }
        }
        return {};
    }

    void Output::Fail(const std::string& why) const
    {
        throw Failure("the output cannot be written: " + name + ": " + why);
    }
}
