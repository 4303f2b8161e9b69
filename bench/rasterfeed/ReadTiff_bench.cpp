// Whole TIFFs from file to 8-bit lines, each beside a program's plainest use of libtiff on the same file: TIFFReadScanline
// over a mapped file, line by line. The ratio of the two is what the layer costs or saves. And all inks of a composite, reduced,
// beside a single-ink file of the same bytes.

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

    /// Gives every line of what `select` chooses, so many views, to `use`, in one buffer.
    template <class Select, class Use>
    void ReadByLayer(const std::string& path, Select select, std::uint32_t views, Use use)
    {
        RasterFeedOpenRecord record = {};
        std::strncpy(record.path, path.c_str(), sizeof record.path - 1);
        record.callbacks = {Open, FileBlockSeek, FileBlockRead, FileBlockFree, [] {}, Fail};
        const RasterFeedHandle reader = RasterFeedInit(&record);
        RasterFeedImageHeader header;
        if (reader == nullptr || select(reader) != 0 || RasterFeedHeader(reader, &header) != 0)
        {
            Fail();
        }
        std::vector<unsigned char> line(header.lineLength);
        unsigned char* const list[] = {line.data()};
        for (std::uint32_t i = 0; i < header.lineCount * views; ++i)
        {
            if (RasterFeedLine(reader, list, 1) != 0)
            {
                Fail();
            }
            use(i, line.data());
        }
        RasterFeedEnd(reader, nullptr);
    }

    /// The same of the file as it is.
    template <class Use>
    void ReadByLayer(const std::string& path, Use use)
    {
        ReadByLayer(
            path, [](RasterFeedHandle) { return 0; }, 1, use);
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

    /// Previews of all inks of a file, at 50.8 pixels per inch as if it had 2400.
    void Reduce(benchmark::State& state, const TiffForm& form, const SampleRule& bytes, const std::string& name)
    {
        const TestSupport::InkRule rule = [&](unsigned sample, std::uint32_t x, std::uint32_t y)
        { return bytes(x * form.samples + sample, y); };
        const std::string path = InputFile(form, rule, name);
        RasterFeedSelection selection;
        selection.resolution = 50.8;
        selection.inputResolution = 2400;
        const std::uint32_t channels[] = {1, 2, 3, 4};
        const auto select = [&](RasterFeedHandle reader)
        { return RasterFeedSelectChannels(reader, &selection, channels, form.samples); };
        for ([[maybe_unused]] const auto iteration : state)
        {
            ReadByLayer(
                path, select, form.samples, [](std::uint32_t, unsigned char* line) { benchmark::DoNotOptimize(line); });
        }
        const std::int64_t rowBytes = std::int64_t{form.width} * form.samples * form.bits / 8;
        state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * rowBytes * form.height);
    }

    /// Composites of four inks, and for each a file of one ink with the same bytes.
    void RegisterReductions()
    {
        const struct
        {
            const char* name;
            std::uint16_t compression;
            std::uint16_t bits;
        } codings[] = {
            {"none", COMPRESSION_NONE, 8},
            {"lzw", COMPRESSION_LZW, 8},
            {"deflate", COMPRESSION_ADOBE_DEFLATE, 8},
            {"none-plate", COMPRESSION_NONE, 1},
            {"packbits-plate", COMPRESSION_PACKBITS, 1},
        };
        const SampleRule page = Page(Pages::Kind::Photo);
        const SampleRule photo = [page](std::uint32_t x, std::uint32_t y) { return page(x % pageWidth, y); };
        for (const auto& coding : codings)
        {
            for (const std::uint16_t inks : {std::uint16_t{4}, std::uint16_t{1}})
            {
                TiffForm form;
                form.photometric = PHOTOMETRIC_SEPARATED;
                form.compression = coding.compression;
                form.bits = coding.bits;
                form.samples = inks;
                form.width = (coding.bits == 1 ? 80000 : 4 * pageWidth) / inks;
                form.height = pageHeight;
                form.rowsPerStrip = 64;
                const std::string name = std::string("reduced-") + coding.name + (inks == 4 ? "-cmyk" : "-single");
                const SampleRule rule = coding.bits == 1 ? Plate() : photo;
                benchmark::RegisterBenchmark(
                    name.c_str(), [=](benchmark::State& state) { Reduce(state, form, rule, name); })
                    ->Unit(benchmark::kMillisecond);
            }
        }
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
    RegisterReductions();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
    {
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
}
