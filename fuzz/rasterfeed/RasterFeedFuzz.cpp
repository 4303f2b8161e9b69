// Any bytes as a TIFF, read to the end or the first refusal. The last byte chooses what goes wrong below the reader, so that
// failing reads, exceptions and a file that shrinks are met in every state; the one before it, a view of a small image.

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
            switch (choice & 0xe3) // most choices are no fault: bytes of a sound file stay a sound file
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

        /// Gives the pixels that the header states; 0 if there is none.
        std::uint64_t ReadAll(RasterFeedHandle reader)
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
            for (std::uint32_t i = 0; i < header.lineCount && bytes < MostBytes; ++i, bytes += header.lineLength + 64)
            {
                if (RasterFeedLine(reader, list, 1) != 0)
                {
                    break;
                }
            }
            return pixels;
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
        std::uint64_t ReadView(const std::string& bytes, const HostFaults& faults, const RasterFeedSelection* selection)
        {
            MemoryFile::Reset(bytes, faults);
            const RasterFeedOpenRecord record = MemoryFile::Record();
            RasterFeedHandle reader = nullptr;
            std::uint64_t pixels = 0;
            try
            {
                reader = RasterFeedInit(&record);
                if (reader != nullptr && (selection == nullptr || RasterFeedSelect(reader, selection) == 0))
                {
                    pixels = ReadAll(reader);
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

        void Run(const std::uint8_t* data, std::size_t size)
        {
            const std::string bytes(reinterpret_cast<const char*>(data), size);
            const std::uint64_t pixels = ReadView(bytes, ChooseFaults(size > 0 ? data[size - 1] : 0, size), nullptr);
            const std::uint8_t choice = size > 1 ? data[size - 2] : 0;
            // A view's lines come one by one, too, but each may read many of the image's.
            if (choice != 0 && pixels > 0 && pixels < MostBytes)
            {
                const RasterFeedSelection selection = ChooseSelection(choice);
                ReadView(bytes, ChooseFaults(data[size - 1], size), &selection);
            }
        }
    }
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    RasterFeedFuzz::Run(data, size);
    return 0;
}
