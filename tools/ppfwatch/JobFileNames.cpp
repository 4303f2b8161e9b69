#include "ppfwatch/JobFileNames.h"

#include "job/InkSet.h"
#include "job/StrictJson.h"

#include <algorithm>
#include <fstream>
#include <iterator>

namespace PpfWatch
{
    namespace
    {
        using Jobs::JsonArray;
        using Jobs::JsonObject;
        using Jobs::JsonValue;

        /// The name without "./" before it, so that one file has one name.
        std::string Plain(std::string name)
        {
            while (name.rfind("./", 0) == 0)
            {
                name.erase(0, 2);
            }
            return name;
        }

        /// The member, if `value` is an object that has it and it is of this type.
        template <class Type>
        const Type* MemberOf(const JsonValue& value, const char* key)
        {
            const auto* const members = value.As<JsonObject>();
            const auto found = members == nullptr ? JsonObject::const_iterator() : members->find(key);
            return members == nullptr || found == members->end() ? nullptr : found->second.As<Type>();
        }

        void Take(const JsonValue& element, const char* key, std::vector<std::string>& names)
        {
            const auto* const text = MemberOf<std::string>(element, key);
            if (text == nullptr || text->empty())
            {
                return;
            }
            std::string name = Plain(*text);
            if (std::find(names.begin(), names.end(), name) == names.end())
            {
                names.push_back(std::move(name));
            }
        }
    }

    std::optional<JobFileNames> NamesInJobFile(const std::string& path)
    {
        JobFileNames names;
        try
        {
            std::ifstream file(path, std::ios::binary);
            const std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
            const JsonValue job = Jobs::ReadStrictJson(text);
            const JsonArray none;
            const auto* const sheets = MemberOf<JsonArray>(job, "sheets");
            for (const JsonValue& sheet : sheets == nullptr ? none : *sheets)
            {
                for (const char* const side : {"front", "back"})
                {
                    const auto* const elements = MemberOf<JsonArray>(sheet, side);
                    for (const JsonValue& element : elements == nullptr ? none : *elements)
                    {
                        Take(element, "file", names.files);
                        Take(element, "inks", names.files);
                        Take(element, "set", names.sets);
                    }
                }
            }
        }
        catch (const Jobs::JsonRefusal&)
        {
            return std::nullopt;
        }
        catch (const std::ios_base::failure&)
        {
            return std::nullopt;
        }
        // One that is not a pattern is not waited for: the job is to fail with it.
        names.sets.erase(
            std::remove_if(
                names.sets.begin(), names.sets.end(), [](const std::string& set) { return !Jobs::IsSetPattern(set); }),
            names.sets.end());
        return names;
    }
}
