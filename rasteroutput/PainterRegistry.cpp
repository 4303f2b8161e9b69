// The table of painters.
#include "rasteroutput/PainterRegistry.h"

#include "rasteroutput/Painter.h"
#include "rasteroutput/Registry.h"

namespace RasterOutput
{
    namespace
    {
        constexpr Registry<Painter> Painters("painter");
    }

    void RegisterPainter(const std::string& identifier, PainterCreator creator)
    {
        Painters.Register(identifier, creator);
    }

    void UnregisterPainter(const std::string& identifier)
    {
        Painters.Unregister(identifier);
    }

    boost::shared_ptr<Painter> MakePainter(const std::string& identifier)
    {
        return Painters.Make(identifier);
    }
}
