// Any bytes as a TIFF, read to the end or the first refusal. The last byte chooses what goes wrong below the reader, so that
// failing reads, exceptions and a file that shrinks are met in every state.

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

        void ReadAll(RasterFeedHandle reader)
        {
            RasterFeedImageHeader header;
            if (RasterFeedHeader(reader, &header) != 0)
            {
                return;
            }
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
                    return;
                }
            }
        }

        void Run(const std::uint8_t* data, std::size_t size)
        {
            MemoryFile::Reset(
                std::string(reinterpret_cast<const char*>(data), size),
                ChooseFaults(size > 0 ? data[size - 1] : 0, size));
            const RasterFeedOpenRecord record = MemoryFile::Record();
            RasterFeedHandle reader = nullptr;
            try
            {
                reader = RasterFeedInit(&record);
                if (reader != nullptr)
                {
                    ReadAll(reader);
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
        }
    }
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    RasterFeedFuzz::Run(data, size);
    return 0;
}
