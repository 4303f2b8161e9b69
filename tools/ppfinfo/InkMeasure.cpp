#include "ppfinfo/InkMeasure.h"

#include <utility>

namespace PpfInfo
{
    InkMeasure MeasureInks(const Ppf::Document& document, const Ppf::Preview& preview)
    {
        InkMeasure measure;
        try
        {
            Ppf::Measurement measured = Ppf::Measure(document, preview);
            measure.inks = std::move(measured.inks);
            measure.excess = measured.excess;
        }
        catch (const Ppf::FormatError& error)
        {
            measure.finding = error.AsFinding();
        }
        return measure;
    }

    void KeepFirst(std::optional<Ppf::Finding>& first, const std::optional<Ppf::Finding>& other)
    {
        if (other && (!first || other->offset < first->offset))
        {
            first = other;
        }
    }
}
