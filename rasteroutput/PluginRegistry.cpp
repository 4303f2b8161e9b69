// The table of plugins.
#include "rasteroutput/PluginRegistry.h"

#include "rasteroutput/Plugin.h"
#include "rasteroutput/Registry.h"

namespace RasterOutput
{
    namespace
    {
        constexpr Registry<Plugin> Plugins("plugin");
    }

    void RegisterPlugin(const std::string& identifier, PluginCreator creator)
    {
        Plugins.Register(identifier, creator);
    }

    void UnregisterPlugin(const std::string& identifier)
    {
        Plugins.Unregister(identifier);
    }

    boost::shared_ptr<Plugin> MakePlugin(const std::string& identifier)
    {
        return Plugins.Make(identifier);
    }
}
