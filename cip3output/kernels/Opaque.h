// Keeps constants in registers.
#pragma once

namespace RasterOutput::Kernels
{
    /// `value`, which the compiler is kept from knowing. What it knows, it may make anew in every round of a loop.
    template <class T>
    T Opaque(T value)
    {
        const volatile T hidden = value;
        return hidden;
    }
}
