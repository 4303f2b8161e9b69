#include "ppfinfo/MeasuredPreview.h"

#include "ppf/InkColumns.h"

#include <atomic>

namespace PpfInfo
{
    namespace
    {
        std::atomic<std::uint64_t> dataBytesRead{0};
    }

    MeasuredPreview MeasurePreview(const Ppf::Document& document, const Ppf::Preview& preview, const ZoneChoice& choice)
    {
        MeasuredPreview measured;
        if (choice.IsGiven())
        {
            std::optional<Ppf::Finding> finding;
            measured.zones = ZonesOf(preview, choice, finding);
            if (finding)
            {
                measured.findings.push_back(*finding);
            }
        }
        try
        {
            const Ppf::Measurement measurement = Ppf::Measure(document, preview);
            for (const Ppf::InkColumns& ink : measurement.inks)
            {
                measured.inks.push_back({ink.Coverage(), ink.Zones(measured.zones.edges)});
            }
            measured.excess = measurement.excess;
        }
        catch (const Ppf::FormatError& error)
        {
            measured.findings.push_back(error.AsFinding());
        }
        CountDataRead(preview);
        return measured;
    }

    std::uint64_t DataBytesRead() noexcept
    {
        return dataBytesRead;
    }

    void CountDataRead(const Ppf::Preview& preview) noexcept
    {
        dataBytesRead += preview.data.size();
    }

    void KeepFirst(std::optional<Ppf::Finding>& first, const std::optional<Ppf::Finding>& other)
    {
        if (other && (!first || other->offset < first->offset))
        {
            first = other;
        }
    }

    void KeepFirst(std::optional<Ppf::Finding>& first, const std::vector<Ppf::Finding>& others)
    {
        for (const Ppf::Finding& other : others)
        {
            KeepFirst(first, std::optional<Ppf::Finding>(other));
        }
    }
}
