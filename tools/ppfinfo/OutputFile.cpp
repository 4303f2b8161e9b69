#include "ppfinfo/OutputFile.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <system_error>

#include <unistd.h>

namespace ppfinfo
{
    namespace
    {
        std::string DraftOf(const std::string& path)
        {
            std::error_code none;
            const auto type = std::filesystem::status(path, none).type();
            if (type != std::filesystem::file_type::not_found && type != std::filesystem::file_type::regular)
            {
                return path;
            }
            // A name of its own, so that a long one leaves room and two runs do not meet.
            const std::filesystem::path place(path);
            return (place.parent_path() / (".ppfinfo-" + std::to_string(getpid()) + ".part")).string();
        }

        [[noreturn]] void Fail(const std::string& path)
        {
            throw std::runtime_error("cannot write " + path + ": " + std::strerror(errno));
        }
    }

    OutputFile::OutputFile(const std::string& path)
        : m_path(path)
        , m_draft(DraftOf(path))
    {
        errno = 0;
        m_stream.open(m_draft, std::ios::binary | std::ios::trunc);
        if (!m_stream)
        {
            Fail(m_path);
        }
    }

    OutputFile::~OutputFile()
    {
        if (!m_committed && m_draft != m_path)
        {
            std::error_code none;
            std::filesystem::remove(m_draft, none);
        }
    }

    void OutputFile::Commit()
    {
        errno = 0;
        m_stream.close();
        if (!m_stream)
        {
            Fail(m_path);
        }
        std::error_code failure;
        if (m_draft != m_path)
        {
            std::filesystem::rename(m_draft, m_path, failure);
        }
        if (failure)
        {
            throw std::runtime_error("cannot write " + m_path + ": " + failure.message());
        }
        m_committed = true;
    }
}
