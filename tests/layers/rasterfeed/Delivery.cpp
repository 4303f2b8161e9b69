// A host's calls in their order, and its arithmetic.
#include "tests/layers/rasterfeed/Delivery.h"

#include "tests/support/Folder.h"

namespace RasterFeedTest
{
    namespace
    {
        Delivery Read(const std::string& tiff, const HostFaults& faults, const RasterFeedSelection* selection)
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
                if ((selection == nullptr || RasterFeedSelect(reader, selection) == 0) &&
                    RasterFeedHeader(reader, &delivery.header) == 0)
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
    }

    Delivery Deliver(const std::string& tiff, const HostFaults& faults)
    {
        return Read(tiff, faults, nullptr);
    }

    Delivery DeliverView(const std::string& tiff, const RasterFeedSelection& selection, const HostFaults& faults)
    {
        return Read(tiff, faults, &selection);
    }

    RasterFeedDescription Describe(const std::string& tiff, const RasterFeedSelection& selection, RasterFeedDepth depth)
    {
        const TestSupport::Folder folder;
        return RasterFeedProbe(folder.Write("scan.tif", tiff), depth, selection);
    }

    std::string ReasonFor(const std::string& tiff, RasterFeedDepth depth, const RasterFeedSelection& selection)
    {
        const std::string reason = Describe(tiff, selection, depth).reason;
        const std::string name = "/scan.tif: ";
        const std::size_t at = reason.find(name);
        return at != std::string::npos ? reason.substr(at + name.size()) : reason;
    }
}
