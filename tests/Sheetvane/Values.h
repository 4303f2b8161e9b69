// Host values in few words.
#pragma once

#include <kxtypes.h>

#include <initializer_list>
#include <string>
#include <utility>

namespace SheetvaneTest
{
    inline KX_TString Text(const std::string& bytes)
    {
        return KX_TString(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
    }

    inline KX_TURL Location(const std::string& path)
    {
        return KX_TURL(Text(path));
    }

    inline KX_TArray ArrayOf(std::initializer_list<KX_TAny> elements)
    {
        KX_TArray array;
        for (const KX_TAny& element : elements)
        {
            array.Append(element);
        }
        return array;
    }

    inline KX_TArray Names(std::initializer_list<const char*> names)
    {
        KX_TArray array;
        for (const char* const name : names)
        {
            array.Append(Text(name));
        }
        return array;
    }

    inline KX_TArray Files(std::initializer_list<std::string> paths)
    {
        KX_TArray array;
        for (const std::string& path : paths)
        {
            array.Append(Location(path));
        }
        return array;
    }

    inline KX_TDict DictOf(std::initializer_list<std::pair<const char*, KX_TAny>> entries)
    {
        KX_TDict dict;
        for (const auto& entry : entries)
        {
            dict.Set(entry.first, entry.second);
        }
        return dict;
    }

    inline KX_TDict JobAndSheet(const char* jobName, const char* sheetName)
    {
        return DictOf({{"CIP3AdmJobName", Text(jobName)}, {"CIP3AdmSheetName", Text(sheetName)}});
    }
}
