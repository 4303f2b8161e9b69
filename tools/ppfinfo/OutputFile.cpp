// A file beside the place, and a rename once it is complete.
#include "ppfinfo/OutputFile.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <system_error>

#include <unistd.h>

namespace PpfInfo
{
    namespace
    {
        namespace fs = std::filesystem;

        /// The file that a link leads to; any other path as it is.
        std::string TargetOf(const std::string& path)
        {
            std::error_code failure;
            const fs::path target = fs::canonical(path, failure);
            return failure ? path : target.string();
        }

        std::string DraftOf(const std::string& path)
        {
            std::error_code none;
            const auto type = fs::status(path, none).type();
            if (type != fs::file_type::not_found && type != fs::file_type::regular)
            {
                return path;
            }
            // A name of its own, so that a long one leaves room and two runs do not meet.
            return (fs::path(path).parent_path() / (".ppfinfo-" + std::to_string(getpid()) + ".part")).string();
        }

        [[noreturn]] void Fail(const std::string& path)
        {
            throw std::runtime_error("cannot write " + path + ": " + std::strerror(errno));
        }
    }

    OutputFile::OutputFile(const std::string& thePath)
        : path(TargetOf(thePath))
        , draft(DraftOf(path))
    {
        errno = 0;
        stream.open(draft, std::ios::binary | std::ios::trunc);
        if (!stream)
        {
            Fail(path);
        }
    }

    OutputFile::~OutputFile()
    {
        if (!committed && draft != path)
        {
            std::error_code none;
            fs::remove(draft, none);
        }
    }

    void OutputFile::Commit()
    {
        errno = 0;
        stream.close();
        if (!stream)
        {
            Fail(path);
        }
        std::error_code failure;
        if (draft != path)
        {
            if (const fs::file_status old = fs::status(path, failure); fs::is_regular_file(old))
            {
                fs::permissions(draft, old.permissions(), failure);
            }
            fs::rename(draft, path, failure);
        }
        if (failure)
        {
            throw std::runtime_error("cannot write " + path + ": " + failure.message());
        }
        committed = true;
    }
}
