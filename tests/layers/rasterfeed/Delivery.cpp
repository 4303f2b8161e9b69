// A host's calls in their order, and its arithmetic.
#include "tests/layers/rasterfeed/Delivery.h"

#include "tests/support/Folder.h"

namespace RasterFeedTest
{
    Delivery Deliver(const std::string& tiff, const HostFaults& faults)
    {
        MemoryFile::Reset(tiff, faults);
        Delivery delivery = {};
        RasterFeedHandle reader = nullptr;
        try
        {
            const RasterFeedOpenRecord record = MemoryFile::Record();
            reader = RasterFeedInit(&record);
            if (reader == nullptr)
            {
                delivery.end = Delivery::End::InitFailed;
                return delivery;
            }
            delivery.end = Delivery::End::HeaderFailed;
            if (RasterFeedHeader(reader, &delivery.header) == 0)
            {
                const RasterFeedImageHeader& header = delivery.header;
                delivery.resolution =
                    static_cast<double>(header.lineLength) /
                    (static_cast<double>(header.widthExtent) / static_cast<double>(header.unitsPerInch));
                delivery.end = Delivery::End::Complete;
                std::vector<unsigned char> buffer(header.lineLength);
                unsigned char* const list[] = {buffer.data()};
                for (std::uint32_t i = 0; i < header.lineCount; ++i)
                {
                    if (RasterFeedLine(reader, list, 1) != 0)
                    {
                        delivery.end = Delivery::End::LineFailed;
                        break;
                    }
                    delivery.lines.emplace_back(buffer.begin(), buffer.end());
                }
            }
        }
        catch (const HostFailure& failure)
        {
            delivery.end = Delivery::End::Thrown;
            delivery.thrownFrom = failure.from;
        }
        std::int32_t scratch;
        if (reader != nullptr)
        {
            RasterFeedEnd(reader, &scratch);
        }
        return delivery;
    }

    std::string ReasonFor(const std::string& tiff, RasterFeedDepth depth)
    {
        const TestSupport::Folder folder;
        const std::string name = folder.Write("scan.tif", tiff);
        const RasterFeedDescription description = RasterFeedProbe(name, depth);
        const std::string prefix = name + ": ";
        if (description.reason.compare(0, prefix.size(), prefix) == 0)
        {
            return description.reason.substr(prefix.size());
        }
        return description.reason;
    }
}
