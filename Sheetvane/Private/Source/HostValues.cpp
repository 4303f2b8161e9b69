// Every element goes through the checked cast, which throws for one of another class.
#include "frontend/HostValues.h"

#include "frontend/Failure.h"

#include <kxtypes.h>

namespace Sheetvane
{
    namespace
    {
        /// The text of each element, all of which are of the class `Class`.
        template <class Class, class Reader>
        std::vector<std::string> ListOf(const KX_TArray& array, const char* className, Reader textOf)
        {
            std::vector<std::string> list;
            const std::uint32_t count = array.Count();
            for (std::uint32_t index = 0; index < count; ++index)
            {
                const void* const element = array.At(index).DynamicCast(className, SourceUnit, __LINE__);
                const Class copy(*static_cast<const Class*>(element));
                list.push_back(textOf(copy));
            }
            return list;
        }
    }

    std::string TextOf(const KX_TString& text)
    {
        return text.c_str();
    }

    std::vector<std::string> NamesOf(const KX_TArray& names)
    {
        return ListOf<KX_TString>(names, "KX_TString", [](const KX_TString& name) { return TextOf(name); });
    }

    std::vector<std::string> LocalPathsOf(const KX_TArray& locations)
    {
        return ListOf<KX_TURL>(
            locations, "KX_TURL", [](const KX_TURL& location) { return TextOf(location.LocalName()); });
    }
}
