// The one place where a fault of a preview is caught instead of passed on.
#include "ppfinfo/InkMeasure.h"

#include <utility>

namespace ppfinfo
{
    InkMeasure MeasureInks(const ppf::Document& document, const ppf::Preview& preview)
    {
        InkMeasure measure;
        try
        {
            ppf::Measurement measured = ppf::Measure(document, preview);
            measure.inks = std::move(measured.inks);
            measure.excess = measured.excess;
        }
        catch (const ppf::FormatError& error)
        {
            measure.fault = error.AsFinding();
        }
        return measure;
    }

    void KeepFirst(std::optional<ppf::Finding>& first, const std::optional<ppf::Finding>& other)
    {
        if (other && (!first || other->offset < first->offset))
        {
            first = other;
        }
    }
}
