#include "frontend/HostValues.h"

#include "frontend/Failure.h"

#include <kxtypes.h>

namespace Sheetvane
{
    std::string TextOf(const KX_TString& text)
    {
        return text.c_str();
    }

    std::vector<std::string> NamesOf(const KX_TArray& names)
    {
        std::vector<std::string> list;
        const std::uint32_t count = names.Count();
        for (std::uint32_t index = 0; index < count; ++index)
        {
            const void* const element = names.At(index).DynamicCast("KX_TString", SourceUnit, __LINE__);
            const KX_TString name(*static_cast<const KX_TString*>(element));
            list.push_back(TextOf(name));
        }
        return list;
    }

    std::vector<std::string> LocalPathsOf(const KX_TArray& locations)
    {
        std::vector<std::string> list;
        const std::uint32_t count = locations.Count();
        for (std::uint32_t index = 0; index < count; ++index)
        {
            const void* const element = locations.At(index).DynamicCast("KX_TURL", SourceUnit, __LINE__);
            const KX_TURL location(*static_cast<const KX_TURL*>(element));
            list.push_back(TextOf(location.LocalName()));
        }
        return list;
    }
}
