#include "ppfwatch/Delivery.h"

#include "host/Descriptor.h"
#include "host/Failure.h"
#include "host/Paths.h"
#include "host/Sync.h"
#include "host/Text.h"
#include "ppfwatch/FileMove.h"
#include "ppfwatch/Stamp.h"

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <set>
#include <system_error>
#include <thread>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace PpfWatch
{
    namespace fs = std::filesystem;

    namespace
    {
        constexpr char ErrorName[] = "error.txt";
        constexpr char PartName[] = ".part"; ///< in a hidden folder: a copy that is not whole yet

        void MakeFolder(const std::string& path)
        {
            constexpr mode_t AsAnyNewFolder = S_IRWXU | S_IRWXG | S_IRWXO;
            if (mkdir(path.c_str(), AsAnyNewFolder) != 0 && errno != EEXIST)
            {
                throw Host::Failure("nothing can be put in " + Host::FolderOf(path) + ": " + Host::SystemText(errno));
            }
        }

        Host::Descriptor OpenNew(const std::string& path)
        {
            constexpr mode_t AsAnyNewFile = S_IRUSR | S_IWUSR | S_IRGRP | S_IWGRP | S_IROTH | S_IWOTH;
            return Host::Descriptor(Host::Uninterrupted(
                [&]
                { return open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC, AsAnyNewFile); }));
        }

        void WriteError(const std::string& path, const std::string& error)
        {
            const std::string line = Host::OneLine(error) + '\n';
            Host::Descriptor file = OpenNew(path);
            if (!file.IsOpen() || !Host::WriteAll(file.Number(), line.data(), line.size()) ||
                !Host::SyncFile(file.Number()) || !file.Close())
            {
                throw Host::Failure(path + " cannot be written: " + Host::SystemText(errno));
            }
        }

        /// A conversion whose watcher was killed is ending, too, and may still be at it here.
        void RemoveTree(const std::string& path)
        {
            constexpr int Tries = 10;
            constexpr std::chrono::milliseconds Pause{50};
            std::error_code problem;
            for (int i = 0; i < Tries; ++i)
            {
                fs::remove_all(path, problem);
                if (!problem || problem == std::errc::no_such_file_or_directory)
                {
                    return;
                }
                std::this_thread::sleep_for(Pause);
            }
            throw Host::Failure("what an earlier run has left cannot be removed: " + path + ": " + problem.message());
        }

        /// Names of the folders in `folder`; none if it is not there.
        std::vector<std::string> FoldersIn(const std::string& folder)
        {
            std::vector<std::string> names;
            std::error_code problem;
            for (const fs::directory_entry& entry : fs::directory_iterator(folder, problem))
            {
                if (entry.is_directory())
                {
                    names.push_back(entry.path().filename());
                }
            }
            if (problem && problem != std::errc::no_such_file_or_directory)
            {
                throw fs::filesystem_error("", folder, problem);
            }
            return names;
        }

        /// Names of the files in `folder` and below, relative to it.
        std::vector<std::string> FilesBelow(const std::string& folder)
        {
            std::vector<std::string> names;
            for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder))
            {
                if (!entry.is_directory() || entry.is_symlink())
                {
                    names.push_back(entry.path().string().substr(folder.size() + 1));
                }
            }
            return names;
        }
    }

    Delivery::Delivery(Folders theFolders, const std::string& theMark, Say theSay)
        : folders(std::move(theFolders))
        , hiddenName(".ppfwatch-" + theMark)
        , say(std::move(theSay))
    {
    }

    void Delivery::Recover()
    {
        RemoveTree(folders.out + '/' + hiddenName);
        unlink((folders.in + '/' + hiddenName + PartName).c_str());
        TakeBack();
    }

    void Delivery::TakeBack() const
    {
        TakeBackFrom(folders.done);
        TakeBackFrom(folders.failed);
    }

    std::string Delivery::NewResult()
    {
        const std::string folder = folders.out + '/' + hiddenName;
        MakeFolder(folder);
        return folder + '/' + std::to_string(++results) + ".ppf";
    }

    void Delivery::TidyOut() const
    {
        // A conversion that was killed may have left its draft there.
        std::error_code ignored;
        fs::remove_all(folders.out + '/' + hiddenName, ignored);
    }

    std::string Delivery::Obstacle() const
    {
        // Where not even this much can be written, another conversion would fail as well.
        constexpr off_t Probe = 1048576;
        const std::string folder = folders.out + '/' + hiddenName;
        const std::string path = folder + "/probe";
        if (mkdir(folder.c_str(), S_IRWXU) != 0 && errno != EEXIST)
        {
            return folders.out + ": " + Host::SystemText(errno);
        }
        const Host::Descriptor file = OpenNew(path);
        const int problem = file.IsOpen() ? posix_fallocate(file.Number(), 0, Probe) : errno;
        unlink(path.c_str());
        return problem == 0 || problem == EOPNOTSUPP ? "" : folders.out + ": " + Host::SystemText(problem);
    }

    void Delivery::Publish(const std::string& result, const std::string& job) const
    {
        const std::string place = folders.out + '/' + job + ".ppf";
        const Host::Descriptor file(
            Host::Uninterrupted([&] { return open(result.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC); }));
        if (!file.IsOpen() || !Host::SyncFile(file.Number()) || rename(result.c_str(), place.c_str()) != 0)
        {
            throw Host::Failure(place + " cannot be put in its place: " + Host::SystemText(errno));
        }
        SyncNames(folders.out);
    }

    std::string Delivery::MoveToDone(const std::string& job, const std::vector<Order::Source>& sources) const
    {
        return MoveTo(folders.done, job, sources, {});
    }

    std::string Delivery::MoveToFailed(
        const std::string& job, const std::vector<Order::Source>& sources, const std::string& error) const
    {
        return MoveTo(folders.failed, job, sources, error);
    }

    std::string Delivery::MoveTo(
        const std::string& folder, const std::string& job, const std::vector<Order::Source>& sources,
        const std::string& error) const
    {
        try
        {
            return Move(folder, job, sources, error);
        }
        catch (const std::exception&)
        {
            TakeBackFrom(folder);
            throw;
        }
    }

    std::string Delivery::Move(
        const std::string& folder, const std::string& job, const std::vector<Order::Source>& sources,
        const std::string& error) const
    {
        const auto demand = [](const Order::Source& source, bool isSame)
        {
            if (!isSame)
            {
                throw Changed(source.name + " has changed since it was converted");
            }
        };
        const auto stampOf = [&](const Order::Source& source)
        { return StampOf(AT_FDCWD, folders.in + '/' + source.name); };
        for (const Order::Source& source : sources)
        {
            demand(source, stampOf(source) == source.stamp);
        }
        const std::string hidden = folder + '/' + hiddenName;
        const std::string staging = hidden + '/' + job;
        MakeFolder(hidden);
        MakeFolder(staging);
        if (!error.empty())
        {
            WriteError(staging + '/' + ErrorName, error);
        }
        std::set<std::string> below; // folders of a job file's files, in `in` and in the hidden one
        for (const Order::Source& source : sources)
        {
            // The move of another name of the same file has changed its state, but not its content.
            const std::optional<Stamp> stamp = stampOf(source);
            demand(source, stamp && stamp->HasContentOf(source.stamp));
            const std::string target = staging + '/' + source.name;
            if (source.name.find('/') != std::string::npos)
            {
                Host::MakeFolders(Host::FolderOf(target), true);
                below.insert({Host::FolderOf(target), Host::FolderOf(folders.in + '/' + source.name)});
            }
            MoveFile(folders.in + '/' + source.name, target, hidden + '/' + PartName);
        }
        for (const std::string& next : below)
        {
            SyncNames(next);
        }
        SyncNames(staging);
        SyncNames(folders.in);
        std::string place = Settle(folder, hidden, job);
        SyncNames(folder);
        return place;
    }

    /// Gives the hidden folder of a job its name, or the first of JOB-2, JOB-3 that is free. Gives its path.
    std::string Delivery::Settle(const std::string& folder, const std::string& hidden, const std::string& job) const
    {
        std::string place = folder + '/' + job;
        for (unsigned count = 2; !RenameToNew(hidden + '/' + job, place); ++count)
        {
            if (errno != EEXIST && errno != ENOTEMPTY)
            {
                throw Host::Failure(
                    "the sources of " + job + " cannot be put in " + place + ": " + Host::SystemText(errno));
            }
            place = folder + '/' + job + '-' + std::to_string(count);
        }
        rmdir(hidden.c_str());
        return place;
    }

    void Delivery::TakeBackFrom(const std::string& folder) const
    {
        const std::string hidden = folder + '/' + hiddenName;
        try
        {
            for (const std::string& job : FoldersIn(hidden))
            {
                TakeBackJob(folder, hidden, job);
            }
        }
        catch (const fs::filesystem_error& error)
        {
            throw Host::Failure(std::string("what was being moved cannot be taken back: ") + error.what());
        }
        unlink((hidden + '/' + PartName).c_str());
        if (rmdir(hidden.c_str()) != 0 && errno != ENOENT)
        {
            throw Host::Failure(hidden + " cannot be removed: " + Host::SystemText(errno));
        }
    }

    /// Brings the sources of a job that were moved back to `in`. One whose place there is taken stays with the delivered jobs.
    void Delivery::TakeBackJob(const std::string& folder, const std::string& hidden, const std::string& job) const
    {
        const std::string staging = hidden + '/' + job;
        unlink((staging + '/' + ErrorName).c_str());
        bool isOneLeft = false;
        SyncNames(folders.in); // that it is there: nothing is made in its place
        for (const std::string& name : FilesBelow(staging))
        {
            const std::string moved = staging + '/' + name;
            const std::string place = folders.in + '/' + name;
            struct stat status = {};
            if (lstat(place.c_str(), &status) != 0)
            {
                Host::MakeFolders(Host::FolderOf(place), true);
                MoveFile(moved, place, folders.in + '/' + hiddenName + PartName);
            }
            else if (HoldSameBytes(moved, place))
            {
                // A copy that was made on the way to another file system, and its original.
                unlink(moved.c_str());
            }
            else
            {
                isOneLeft = true;
                say(Level::Warning,
                    name + ": a new file has come in the place of one that was converted; that one stays in " + folder);
            }
        }
        SyncNames(folders.in);
        if (isOneLeft)
        {
            Settle(folder, hidden, job);
        }
        else
        {
            RemoveTree(staging);
        }
    }
}
