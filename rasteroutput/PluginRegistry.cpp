// The table of plugins.
#include "rasteroutput/PluginRegistry.h"

#include "rasteroutput/Plugin.h"
#include "rasteroutput/Registry.h"

namespace RasterOutput
{
    namespace
    {
        constexpr Registry<Plugin> plugins("plugin");
    }

    void RegisterPlugin(const std::string& identifier, PluginCreator creator)
    {
        plugins.Register(identifier, creator);
    }

    void UnregisterPlugin(const std::string& identifier)
    {
        plugins.Unregister(identifier);
    }

    boost::shared_ptr<Plugin> MakePlugin(const std::string& identifier)
    {
        return plugins.Make(identifier);
    }
}
