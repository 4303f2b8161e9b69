// Base of extensions that are made by name, as painters are, but take no part in a pipeline.
#pragma once

namespace RasterOutput
{
    /// An extension. What it does is left to the interface that derives from it.
    class Plugin
    {
    public:
        Plugin() = default;
        Plugin(const Plugin&) = delete;
        Plugin& operator=(const Plugin&) = delete;
        virtual ~Plugin() = default;
    };
}
