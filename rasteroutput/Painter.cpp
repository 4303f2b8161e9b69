// What a painter does in place of the operations that a stage leaves open.
#include "rasteroutput/Painter.h"

namespace RasterOutput
{
    Painter::~Painter() = default;

    void Painter::InitializeProcess()
    {
        InitializePainter();
    }
    void Painter::FinalizeProcess()
    {
        FinalizePainter();
    }
    void Painter::AfterInitialize(const ProcessorParameters&, ClientParameterExtractor&) {}
    void Painter::ReservedHook3(std::uint32_t) {}
    void Painter::ReservedHook4(std::uint32_t) {}
}
