// The table of painters.
#include "rasteroutput/PainterRegistry.h"

#include "rasteroutput/Painter.h"
#include "rasteroutput/Registry.h"

namespace RasterOutput
{
    namespace
    {
        constexpr Registry<Painter> painters("painter");
    }

    void RegisterPainter(const std::string& identifier, PainterCreator creator)
    {
        painters.Register(identifier, creator);
    }

    void UnregisterPainter(const std::string& identifier)
    {
        painters.Unregister(identifier);
    }

    boost::shared_ptr<Painter> MakePainter(const std::string& identifier)
    {
        return painters.Make(identifier);
    }
}
