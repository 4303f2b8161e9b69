// Any bytes as a TIFF, read to the end or the first refusal. The last byte chooses what goes wrong below the reader, so that
// failing reads, exceptions and a file that shrinks are met in every state; the one before it, a view of a small image; the
// one before that, a page and its channels. And the inks of the file are asked for.

#include "rasterfeed/Inks.h"
#include "rasterfeed/Refusal.h"
#include "rasterfeed/SourceFile.h"
#include "rasterfeed/TiffFile.h"
#include "tests/layers/rasterfeed/MemoryFile.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

namespace RasterFeedFuzz
{
    namespace
    {
        using RasterFeedTest::HostFailure;
        using RasterFeedTest::HostFaults;
        using RasterFeedTest::MemoryFile;
        // Enough to come into every strip and tile of a small image, few enough that a large one does not stop the fuzzer.
        constexpr std::uint64_t MostBytes = 8u << 20;

        HostFaults ChooseFaults(std::uint8_t choice, std::size_t size)
        {
            HostFaults faults;
            const int call = choice >> 2 & 7;
            switch (choice & 0xe3) // most choices leave it out: bytes of a sound file stay a sound file
            {
            case 0xe1:
                faults.readFails = call;
                break;
            case 0xe2:
                faults.readThrows = call;
                break;
            case 0xe3:
                faults.shrinksAt = call;
                faults.shrunkenSize = size / 2;
                break;
            default:
                break;
            }
            return faults;
        }

        /// Gives the pixels that the header states for each of `views` views; 0 if there is no header.
        std::uint64_t ReadAll(RasterFeedHandle reader, std::size_t views)
        {
            RasterFeedImageHeader header;
            if (RasterFeedHeader(reader, &header) != 0)
            {
                return 0;
            }
            const std::uint64_t pixels = std::uint64_t{header.lineLength} * header.lineCount;
            if (header.widthExtent < 1 || header.unitsPerInch < 1 || header.lineLength == 0 || header.lineCount == 0)
            {
                std::abort();
            }
            std::vector<unsigned char> line(header.lineLength);
            unsigned char* const list[] = {line.data()};
            std::uint64_t bytes = 0;
            const std::uint64_t lines = std::uint64_t{header.lineCount} * views;
            for (std::uint64_t i = 0; i < lines && bytes < MostBytes; ++i, bytes += header.lineLength + 64)
            {
                if (RasterFeedLine(reader, list, 1) != 0)
                {
                    break;
                }
            }
            return pixels;
        }

        /// No channel, one, or three, of the first eight.
        std::vector<std::uint32_t> ChooseChannels(std::uint8_t choice)
        {
            const std::uint32_t channel = 1 + (choice >> 2 & 7);
            switch (choice >> 6)
            {
            case 0:
                return {};
            case 1:
                return {channel};
            default:
                return {channel, 1, channel / 2 + 1};
            }
        }

        RasterFeedSelection ChooseSelection(std::uint8_t choice)
        {
            constexpr double Resolutions[] = {0, 50.8, 1, 71.9};
            constexpr double InputResolutions[] = {0, 2400, 1e9, 1e300};
            RasterFeedSelection selection;
            selection.orientation = static_cast<RasterFeedOrientation>(choice & 7);
            selection.resolution = Resolutions[choice >> 3 & 3];
            selection.inputResolution = InputResolutions[choice >> 5 & 3];
            selection.reduceAbove = choice >> 7 != 0 ? 300 : 0;
            return selection;
        }

        /// Reads the file to its end or first refusal; gives the pixels that its header states.
        std::uint64_t ReadView(
            const std::string& bytes, const HostFaults& faults, const RasterFeedSelection& selection,
            const std::vector<std::uint32_t>& channels)
        {
            MemoryFile::Reset(bytes, faults);
            const RasterFeedOpenRecord record = MemoryFile::Record();
            RasterFeedHandle reader = nullptr;
            std::uint64_t pixels = 0;
            try
            {
                reader = RasterFeedInit(&record);
                std::int32_t selected = 0;
                if (!channels.empty())
                {
                    selected = RasterFeedSelectChannels(
                        reader, &selection, channels.data(), static_cast<std::uint32_t>(channels.size()));
                }
                else
                {
                    selected = RasterFeedSelect(reader, &selection);
                }
                if (reader != nullptr && selected == 0)
                {
                    pixels = ReadAll(reader, channels.empty() ? 1 : channels.size());
                }
            }
            catch (const HostFailure&)
            {
                // The host's own; it must come out whole.
            }
            std::int32_t scratch;
            if (reader != nullptr)
            {
                RasterFeedEnd(reader, &scratch);
            }
            if (MemoryFile::Closed() != MemoryFile::Opened())
            {
                std::abort();
            }
            return pixels;
        }

        /// The inks, each with a name; whatever the file says, no more than there may be.
        void FindInks(const std::string& bytes, const HostFaults& faults)
        {
            MemoryFile::Reset(bytes, faults);
            const RasterFeedOpenRecord record = MemoryFile::Record();
            try
            {
                RasterFeed::SourceFile source(record.callbacks, record.path);
                RasterFeed::TiffFile file(source);
                for (const RasterFeedInk& ink : RasterFeed::InksOf(file))
                {
                    if (ink.name.empty() || ink.page == 0 || ink.channel == 0 || ink.channel > 32)
                    {
                        std::abort();
                    }
                }
            }
            catch (const RasterFeed::Refusal&)
            {
                // As the reader would say it.
            }
            catch (const HostFailure&)
            {
            }
        }

        void Run(const std::uint8_t* data, std::size_t size)
        {
            const std::string bytes(reinterpret_cast<const char*>(data), size);
            const HostFaults faults = ChooseFaults(size > 0 ? data[size - 1] : 0, size);
            FindInks(bytes, faults);
            const std::uint8_t view = size > 1 ? data[size - 2] : 0;
            const std::uint8_t image = size > 2 ? data[size - 3] : 0;
            RasterFeedSelection whole;
            whole.page = image & 3;
            const std::vector<std::uint32_t> channels = ChooseChannels(image);
            const std::uint64_t pixels = ReadView(bytes, faults, whole, channels);
            // A view's lines come one by one, too, but each may read many of the image's.
            if (view != 0 && pixels > 0 && pixels < MostBytes)
            {
                RasterFeedSelection selection = ChooseSelection(view);
                selection.page = whole.page;
                ReadView(bytes, faults, selection, channels);
            }
        }
    }
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    RasterFeedFuzz::Run(data, size);
    return 0;
}
