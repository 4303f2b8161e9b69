#include "job/InkSet.h"

#include "host/Failure.h"
#include "host/Paths.h"
#include "host/Text.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <tuple>

#include <strings.h>
#include <sys/stat.h>

namespace Jobs
{
    namespace
    {
        constexpr std::array<const char*, 4> ProcessInks = {"Cyan", "Magenta", "Yellow", "Black"};
        constexpr std::array<const char*, 4> ShortWords = {"C", "M", "Y", "K"};

        std::size_t RankOf(const std::string& ink)
        {
            return static_cast<std::size_t>(
                std::find(ProcessInks.begin(), ProcessInks.end(), ink) - ProcessInks.begin());
        }

        bool IsFolder(const std::string& path)
        {
            struct stat status = {};
            return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
        }

        std::vector<std::string> NamesBeside(const std::string& path)
        {
            try
            {
                return Host::NamesInFolder(Host::FolderOf(path));
            }
            catch (const Host::Failure& failure)
            {
                throw Host::UsageError(failure.what());
            }
        }

        /// Paths of the files that fit `pattern`, an absolute path, in the order of their bytes.
        std::vector<std::string> FilesOfSet(const std::string& pattern)
        {
            const std::string place = pattern.substr(0, pattern.rfind('/') + 1);
            std::vector<std::string> files;
            for (const std::string& name : NamesBeside(pattern))
            {
                std::string file = place + name;
                if (IsInSet(pattern, file) && !IsFolder(file))
                {
                    files.push_back(std::move(file));
                }
            }
            std::sort(files.begin(), files.end());
            return files;
        }
    }

    std::string InkOfWord(const std::string& word)
    {
        for (std::size_t i = 0; i < ProcessInks.size(); ++i)
        {
            if (strcasecmp(word.c_str(), ProcessInks[i]) == 0 || strcasecmp(word.c_str(), ShortWords[i]) == 0)
            {
                return ProcessInks[i];
            }
        }
        return word;
    }

    bool IsInkBefore(const std::string& first, const std::string& second)
    {
        return std::make_tuple(RankOf(first), std::string_view(first)) <
               std::make_tuple(RankOf(second), std::string_view(second));
    }

    bool IsSetPattern(std::string_view pattern)
    {
        const auto star = pattern.find('*');
        return star != std::string_view::npos && pattern.find_first_of("*/", star + 1) == std::string_view::npos;
    }

    bool IsInSet(std::string_view pattern, std::string_view name)
    {
        const auto star = pattern.rfind('*'); // a folder may have one in its name
        const std::string_view end = pattern.substr(star + 1);
        return name.size() >= pattern.size() && name.substr(0, star) == pattern.substr(0, star) &&
               name.substr(name.size() - end.size()) == end && name.find('/', star) == std::string_view::npos;
    }

    std::vector<Separation> SeparationsOfSet(const std::string& pattern, const std::string& folder)
    {
        if (!IsSetPattern(pattern))
        {
            throw Host::UsageError(
                Host::Quoted(pattern) +
                " is not a set: exactly one * is needed, in the file's name, where the ink's stands");
        }
        const std::string path = Host::AbsolutePath(pattern, folder);
        const auto star = path.rfind('*');
        std::vector<Separation> separations;
        for (const std::string& file : FilesOfSet(path))
        {
            separations.push_back({InkOfWord(file.substr(star, file.size() + 1 - path.size())), file});
        }
        if (separations.empty())
        {
            throw Host::UsageError("no file fits " + Host::Quoted(path));
        }
        std::stable_sort(
            separations.begin(), separations.end(),
            [](const Separation& a, const Separation& b) { return IsInkBefore(a.name, b.name); });
        const auto twins = std::adjacent_find(
            separations.begin(), separations.end(),
            [](const Separation& a, const Separation& b) { return a.name == b.name; });
        if (twins != separations.end())
        {
            throw Host::UsageError(
                twins->file + " and " + (twins + 1)->file + " are both the ink " + Host::Quoted(twins->name) +
                "; one of them is wanted");
        }
        return separations;
    }
}
