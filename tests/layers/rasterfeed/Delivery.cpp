// A host's calls in their order, and its arithmetic.
#include "tests/layers/rasterfeed/Delivery.h"

#include "tests/support/Folder.h"

namespace RasterFeedTest
{
    namespace
    {
        /// `select` chooses what the reader reads.
        template <class Select>
        Delivery Read(const std::string& tiff, const HostFaults& faults, Select select, std::size_t views = 1)
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
                if (select(reader) == 0 && RasterFeedHeader(reader, &delivery.header) == 0)
                {
                    const RasterFeedImageHeader& header = delivery.header;
                    delivery.resolution =
                        static_cast<double>(header.lineLength) /
                        (static_cast<double>(header.widthExtent) / static_cast<double>(header.unitsPerInch));
                    delivery.end = Delivery::End::Complete;
                    std::vector<unsigned char> buffer(header.lineLength);
                    unsigned char* const list[] = {buffer.data()};
                    for (std::size_t i = 0; i < header.lineCount * views; ++i)
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

        std::string WithoutName(const std::string& reason)
        {
            const std::string name = "/scan.tif: ";
            const std::size_t at = reason.find(name);
            return at != std::string::npos ? reason.substr(at + name.size()) : reason;
        }
    }

    Delivery Deliver(const std::string& tiff, const HostFaults& faults)
    {
        return Read(tiff, faults, [](RasterFeedHandle) { return 0; });
    }

    Delivery DeliverView(const std::string& tiff, const RasterFeedSelection& selection, const HostFaults& faults)
    {
        return Read(tiff, faults, [&](RasterFeedHandle reader) { return RasterFeedSelect(reader, &selection); });
    }

    Delivery DeliverChannels(
        const std::string& tiff, const RasterFeedSelection& selection, const std::vector<std::uint32_t>& channels)
    {
        const auto select = [&](RasterFeedHandle reader) {
            return RasterFeedSelectChannels(
                reader, &selection, channels.data(), static_cast<std::uint32_t>(channels.size()));
        };
        return Read(tiff, {}, select, channels.size());
    }

    RasterFeedDescription Describe(const std::string& tiff, const RasterFeedSelection& selection, RasterFeedDepth depth)
    {
        const TestSupport::Folder folder;
        return RasterFeedProbe(folder.Write("scan.tif", tiff), depth, selection);
    }

    std::string ReasonFor(const std::string& tiff, RasterFeedDepth depth, const RasterFeedSelection& selection)
    {
        return WithoutName(Describe(tiff, selection, depth).reason);
    }

    RasterFeedInkList InksOf(const std::string& tiff)
    {
        const TestSupport::Folder folder;
        RasterFeedInkList list = RasterFeedInks(folder.Write("scan.tif", tiff));
        list.reason = WithoutName(list.reason);
        return list;
    }
}
