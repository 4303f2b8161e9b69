#include "tiff2ppf/Output.h"

#include "tiff2ppf/Descriptor.h"
#include "tiff2ppf/Failure.h"
#include "tiff2ppf/FileOutput.h"
#include "tiff2ppf/Paths.h"
#include "tiff2ppf/StreamOutput.h"

#include <array>
#include <cerrno>
#include <filesystem>
#include <optional>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Tiff2Ppf
{
    namespace
    {
        namespace fs = std::filesystem;

        std::string LastProblem()
        {
            return std::generic_category().message(errno);
        }

        [[noreturn]] void RefuseToOpen(const std::string& name, int problem)
        {
            throw ConversionError(CouldNotOpen + (": " + name) + ": " + std::generic_category().message(problem));
        }

        /// The file at the end of the links at `path`, whether it exists or not. The links do have an end, as the system
        /// has followed them before.
        std::string EndOfLinks(std::string path)
        {
            std::error_code problem;
            while (fs::is_symlink(fs::symlink_status(path, problem)))
            {
                path = AbsolutePath(fs::read_symlink(path).native(), FolderOf(path));
            }
            return path;
        }

        bool IsStandardOutput(const struct stat& status)
        {
            struct stat standard = {};
            return fstat(STDOUT_FILENO, &standard) == 0 && standard.st_dev == status.st_dev &&
                   standard.st_ino == status.st_ino;
        }
    }

    Output::Output(const std::string& theName, const std::string& workFolder)
        : work(workFolder)
        , name(theName)
    {
    }

    void Output::Fail(const std::string& what) const
    {
        const std::string why = LastProblem();
        throw ConversionError(what + ": " + name + ": " + why);
    }

    std::string Output::ObstacleToWriting() const
    {
        const std::string& path = work.Path();
        std::error_code problem;
        fs::create_directories(FolderOf(path), problem);
        if (problem)
        {
            return problem.message();
        }
        const Descriptor file(open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, S_IRUSR | S_IWUSR));
        // A full disk may have room left for a part of this, and then refuses the next.
        const std::array<char, 65536> filling{};
        for (int i = 0; file.IsOpen() && i < 2; ++i)
        {
            if (write(file.Number(), filling.data(), filling.size()) < 0)
            {
                return LastProblem();
            }
        }
        return file.IsOpen() ? std::string() : LastProblem();
    }

    std::unique_ptr<Output> OpenOutput(const std::string& name)
    {
        const bool isDash = name == "-";
        struct stat status = {};
        if ((isDash ? fstat(STDOUT_FILENO, &status) : stat(name.c_str(), &status)) != 0)
        {
            // A folder that is missing may yet be made, and if it cannot be, the library says so.
            const bool mayBeMade = errno == ENOENT || errno == ENOTDIR || errno == EACCES;
            if (isDash || !mayBeMade)
            {
                RefuseToOpen(name, errno);
            }
            if (name.back() == '/')
            {
                RefuseToOpen(name, EISDIR);
            }
            return std::make_unique<FileOutput>(name, EndOfLinks(name), std::nullopt);
        }
        if (S_ISDIR(status.st_mode))
        {
            RefuseToOpen(name, EISDIR);
        }
        const bool isStandardOutput = IsStandardOutput(status);
        if (S_ISREG(status.st_mode) && !isStandardOutput)
        {
            return std::make_unique<FileOutput>(name, EndOfLinks(name), status);
        }

        // A descriptor that is open already is used as it is, so that what went there before stays.
        const int stream = isStandardOutput ? fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 0)
                                            : open(name.c_str(), O_WRONLY | O_NOCTTY | O_CLOEXEC);
        if (stream < 0)
        {
            RefuseToOpen(name, errno);
        }
        return std::make_unique<StreamOutput>(isDash ? "standard output" : name, stream);
    }
}
