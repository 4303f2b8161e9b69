// Plugins by name, in a table apart from that of the painters: the same name may stand in both. The table is
// process-wide, there until the process has ended, and not guarded against use by several threads at once.
#pragma once

#include <boost/smart_ptr/shared_ptr.hpp>

#include <string>

namespace RasterOutput
{
    class Plugin;

    /// Makes a new plugin, which passes to the caller.
    using PluginCreator = Plugin* (*)();

    /// Enters `creator` under `identifier`, which may be any string of bytes. Throws Exception "<identifier> plugin
    /// identifier already registered" if the name is taken, and then leaves the table as it was, and std::bad_alloc.
    void RegisterPlugin(const std::string& identifier, PluginCreator creator);

    /// Removes the entry; plugins made by it live on. Throws Exception "<identifier> plugin failed to unregister" if
    /// there is none.
    void UnregisterPlugin(const std::string& identifier);

    /// A new plugin from the creator registered under `identifier`. Throws Exception "Could not make plugin
    /// <identifier>" if there is none or if it throws anything, and std::bad_alloc.
    boost::shared_ptr<Plugin> MakePlugin(const std::string& identifier);
}
