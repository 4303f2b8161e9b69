#include "ppfwatch/JobFileNames.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <fstream>

namespace PpfWatch
{
    namespace
    {
        using Json = nlohmann::json;

        /// The name without "./" before it, so that one file has one name.
        std::string Plain(std::string name)
        {
            while (name.rfind("./", 0) == 0)
            {
                name.erase(0, 2);
            }
            return name;
        }

        void Take(const Json& element, const char* key, std::vector<std::string>& names)
        {
            const auto found = element.find(key);
            if (found == element.end() || !found->is_string() || found->get_ref<const std::string&>().empty())
            {
                return;
            }
            std::string name = Plain(found->get<std::string>());
            if (std::find(names.begin(), names.end(), name) == names.end())
            {
                names.push_back(std::move(name));
            }
        }
    }

    std::optional<JobFileNames> NamesInJobFile(const std::string& path)
    {
        std::ifstream file(path, std::ios::binary);
        const Json job = Json::parse(file, nullptr, false);
        if (job.is_discarded())
        {
            return std::nullopt;
        }
        JobFileNames names;
        if (!job.is_object() || !job.contains("sheets"))
        {
            return names;
        }
        for (const Json& sheet : job["sheets"])
        {
            for (const char* const side : {"front", "back"})
            {
                if (!sheet.is_object() || !sheet.contains(side) || !sheet[side].is_array())
                {
                    continue;
                }
                for (const Json& element : sheet[side])
                {
                    if (element.is_object())
                    {
                        Take(element, "file", names.files);
                        Take(element, "inks", names.files);
                        Take(element, "set", names.sets);
                    }
                }
            }
        }
        return names;
    }

    bool IsInSet(const std::string& pattern, const std::string& name)
    {
        const std::size_t star = pattern.find('*');
        if (star == std::string::npos || name.size() <= pattern.size() - 1)
        {
            return false;
        }
        const std::string end = pattern.substr(star + 1);
        const bool fits = name.compare(0, star, pattern, 0, star) == 0 &&
                          name.compare(name.size() - end.size(), end.size(), end) == 0;
        return fits && name.find('/', star) == std::string::npos;
    }
}
