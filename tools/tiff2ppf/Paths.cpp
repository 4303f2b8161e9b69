#include "tiff2ppf/Paths.h"

#include "tiff2ppf/Failure.h"

#include <filesystem>
#include <system_error>

namespace Tiff2Ppf
{
    std::string CurrentFolder()
    {
        std::error_code problem;
        const std::filesystem::path folder = std::filesystem::current_path(problem);
        if (problem)
        {
            throw UsageError("the current folder cannot be found: " + problem.message());
        }
        return folder.native();
    }

    std::string AbsolutePath(const std::string& name, const std::string& folder)
    {
        if (!name.empty() && name.front() == '/')
        {
            return name;
        }
        return folder.back() == '/' ? folder + name : folder + '/' + name;
    }

    std::string FolderOf(const std::string& path)
    {
        const auto slash = path.rfind('/');
        return slash == 0 ? "/" : path.substr(0, slash);
    }
}
