// Whole TIFFs from file to 8-bit lines, each beside a program's plainest use of libtiff on the same file: TIFFReadScanline
// over a mapped file, line by line. The ratio of the two is what the layer costs or saves.

#include "bench/rasterfeed/Inputs.h"

#include <FileBlockLib.h>
#include <RasterFeedLib.h>

#include <benchmark/benchmark.h>
#include <tiffio.h>

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <vector>

namespace
{
    FileBlock Open(const char* name)
    {
        const FileBlock block = FileBlockAlloc(0, "STR,SEQ");
        FileBlockOpen(block, name, ".tif", 0);
        return block;
    }

    void Fail()
    {
        throw std::runtime_error("a read failed");
    }

    /// Gives every line of the file to `use`, in one buffer.
    template <class Use>
    void ReadByLayer(const std::string& path, Use use)
    {
        RasterFeedOpenRecord record = {};
        std::strncpy(record.path, path.c_str(), sizeof record.path - 1);
        record.callbacks = {Open, FileBlockSeek, FileBlockRead, FileBlockFree, [] {}, Fail};
        const RasterFeedHandle reader = RasterFeedInit(&record);
        RasterFeedImageHeader header;
        if (reader == nullptr || RasterFeedHeader(reader, &header) != 0)
        {
            Fail();
        }
        std::vector<unsigned char> line(header.lineLength);
        unsigned char* const list[] = {line.data()};
        for (std::uint32_t i = 0; i < header.lineCount; ++i)
        {
            if (RasterFeedLine(reader, list, 1) != 0)
            {
                Fail();
            }
            use(i, line.data());
        }
        RasterFeedEnd(reader, nullptr);
    }

    void ReadByLibtiff(const std::string& path)
    {
        TIFF* const tiff = TIFFOpen(path.c_str(), "r");
        std::uint32_t height = 0;
        TIFFGetField(tiff, TIFFTAG_IMAGELENGTH, &height);
        std::vector<unsigned char> line(static_cast<std::size_t>(TIFFScanlineSize(tiff)));
        for (std::uint32_t y = 0; y < height; ++y)
        {
            if (TIFFReadScanline(tiff, line.data(), y, 0) != 1)
            {
                Fail();
            }
            benchmark::DoNotOptimize(line.data());
        }
        TIFFClose(tiff);
    }

    struct Case
    {
        std::string name;
        TiffForm form;
        SampleRule rule;
    };

    /// One line in a hundred, and the last, are compared with the rule.
    void Verify(const Case& input, const std::string& path)
    {
        const std::uint32_t highest = (1u << input.form.bits) - 1;
        ReadByLayer(
            path,
            [&](std::uint32_t y, const unsigned char* line)
            {
                if (y % 100 != 0 && y + 1 != input.form.height)
                {
                    return;
                }
                for (std::uint32_t x = 0; x < input.form.width; ++x)
                {
                    if (line[x] != input.rule(x, y) * 255 / highest)
                    {
                        throw std::runtime_error(input.name + ": wrong pixels");
                    }
                }
            });
    }

    void Run(benchmark::State& state, const Case& input, bool byLayer)
    {
        std::string fileName = input.name;
        std::replace(fileName.begin(), fileName.end(), '/', '-');
        const std::string path = InputFile(input.form, input.rule, fileName);
        Verify(input, path);
        for ([[maybe_unused]] const auto iteration : state)
        {
            if (byLayer)
            {
                ReadByLayer(path, [](std::uint32_t, unsigned char* line) { benchmark::DoNotOptimize(line); });
            }
            else
            {
                ReadByLibtiff(path);
            }
        }
        state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * input.form.width * input.form.height);
    }

    std::vector<Case> Cases()
    {
        const struct
        {
            const char* name;
            std::uint16_t compression;
            std::uint32_t rowsPerStrip;
        } codings[] = {
            {"none", COMPRESSION_NONE, 2},
            {"none-one-strip", COMPRESSION_NONE, 6000},
            {"deflate", COMPRESSION_ADOBE_DEFLATE, 64},
            {"deflate-one-strip", COMPRESSION_ADOBE_DEFLATE, 6000},
            {"lzw", COMPRESSION_LZW, 64},
            {"packbits", COMPRESSION_PACKBITS, 64},
        };
        std::vector<Case> cases;
        for (const Pages::Kind kind : {Pages::Kind::Flat, Pages::Kind::Photo})
        {
            const SampleRule rule = Page(kind);
            for (const auto& coding : codings)
            {
                TiffForm form;
                form.width = pageWidth;
                form.height = pageHeight;
                form.compression = coding.compression;
                form.rowsPerStrip = coding.rowsPerStrip;
                cases.push_back({std::string(coding.name) + "/" + Pages::Name(kind), form, rule});
            }
        }
        TiffForm plate;
        plate.bits = 1;
        plate.width = 20000;
        plate.height = 28000;
        plate.rowsPerStrip = plate.height;
        cases.push_back({"none-one-strip/plate", plate, Plate()});
        plate.compression = COMPRESSION_CCITTFAX4;
        cases.push_back({"g4-one-strip/plate", plate, Plate()});
        const SampleRule page = Page(Pages::Kind::Flat);
        const SampleRule text = [page](std::uint32_t x, std::uint32_t y) -> std::uint32_t
        { return page(x / 5, y / 5) >= 128 ? 1 : 0; };
        cases.push_back({"g4-one-strip/text", plate, text});
        return cases;
    }
}

int main(int argc, char** argv)
{
#ifdef NDEBUG
    benchmark::AddCustomContext("build", "optimised");
#else
    benchmark::AddCustomContext("build", "with assertions; do not quote these figures");
#endif
    const std::string version = TIFFGetVersion();
    benchmark::AddCustomContext("libtiff", version.substr(0, version.find('\n')));
    for (const Case& input : Cases())
    {
        for (const bool byLayer : {true, false})
        {
            const std::string name = input.name + (byLayer ? "/layer" : "/libtiff");
            benchmark::RegisterBenchmark(
                name.c_str(), [input, byLayer](benchmark::State& state) { Run(state, input, byLayer); })
                ->Unit(benchmark::kMillisecond);
        }
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
    {
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
}
