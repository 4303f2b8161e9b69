// The whole road of a scan line, from the decoder's buffer into the document: invert, compress, encode, append. The
// document's memory is new each time, as it is in a conversion; its file is the null device.
#include "bench/cip3output/Plates.h"
#include "cip3output/CIP3Painter.h"
#include "cip3output/CIP3ParameterExtractor.h"
#include "rasteroutput/ExtractionDispatcher.h"
#include "rasteroutput/ScanLineRef.h"
#include "tests/cip3output/PlainLoops.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace
{
    using namespace RasterOutput;
    using Pages::Kind;
    using Plates::Height;
    using Plates::Width;
    using Plate = std::vector<std::uint8_t>;

    struct Form
    {
        const char* name;
        std::int32_t compression;
        std::int32_t encoding;
    };

    constexpr Form RunLengthASCII85 = {
        "run_length+ascii85", CIP3CompressionValue::RunLength, CIP3EncodingValue::ASCII85};

    constexpr Form Forms[] = {
        RunLengthASCII85,
        {"run_length+ascii_hex", CIP3CompressionValue::RunLength, CIP3EncodingValue::ASCIIHex},
        {"run_length+binary", CIP3CompressionValue::RunLength, CIP3EncodingValue::Binary},
        {"none+ascii85", CIP3CompressionValue::None, CIP3EncodingValue::ASCII85},
        {"none+binary", CIP3CompressionValue::None, CIP3EncodingValue::Binary},
    };

    void Paint(const Plate& plate, const Form& form, const std::wstring& path)
    {
        Sheetvane::CIP3ParameterExtractor extractor;
        extractor.painterParameters = {path, 1, form.compression, form.encoding};
        ProcessorParameters raster;
        raster.width = static_cast<std::int32_t>(Width);
        raster.height = static_cast<std::int32_t>(Height);
        raster.bitsPerComponent = 8;
        raster.planar = 1;
        CIP3SheetParameters sheet;
        sheet.jobName = "bench";
        sheet.extentX = 1;
        sheet.extentY = 1;
        CIP3SurfaceParameters surface;
        surface.separationNames = {"Black"};

        CIP3Painter painter;
        painter.Initialize(raster, extractor);
        painter.BeginSheet(sheet);
        painter.BeginSurface(surface);
        painter.BeginSeparation();
        std::vector<unsigned char> buffer(Width);
        ScanLineRef line;
        line.componentsPerSample = 1;
        line.bitsPerComponent = 8;
        line.width = static_cast<std::int32_t>(Width);
        line.ResetPlanes();
        line[0].SetRange(buffer.data(), buffer.data() + buffer.size());
        for (std::size_t y = 0; y < Height; ++y)
        {
            // Stands for the decoder.
            std::memcpy(buffer.data(), plate.data() + y * Width, Width);
            painter.ProcessScanLine(line);
        }
        painter.EndSeparation();
        painter.EndSurface();
        painter.EndSheet();
        painter.Finalize();
    }

    /// Whether the default form is what the plain loops make of the lines.
    bool IsRight(const Plate& plate)
    {
        const std::filesystem::path path = std::filesystem::temp_directory_path() / "cip3output_bench.ppf";
        Paint(plate, RunLengthASCII85, path.wstring());
        std::ifstream file(path, std::ios::binary);
        std::string document(std::istreambuf_iterator<char>(file), {});
        std::filesystem::remove(path);

        std::string tokens;
        for (std::size_t y = 0; y < Height; ++y)
        {
            const std::string line(reinterpret_cast<const char*>(plate.data()) + y * Width, Width);
            tokens += PlainLoops::RunLength(PlainLoops::Invert(line));
        }
        const std::string expected = PlainLoops::ASCII85(tokens);
        const std::string begin = "CIP3PreviewImage \n";
        document.erase(0, document.find(begin) + begin.size());
        document.erase(std::remove(document.begin(), document.end(), '\n'), document.end());
        return document.compare(0, expected.size(), expected) == 0;
    }

    void RunPainter(benchmark::State& state, const Form& form, Kind kind)
    {
        ExtractionDispatcher::Instance().Add<CIP3Painter, Sheetvane::CIP3ParameterExtractor>(&ApplyParameters);
        const Plate& plate = Plates::Of(kind);
        if (&form == &Forms[0] && !IsRight(plate))
        {
            state.SkipWithError("differs from the plain loops");
            return;
        }
        for (auto _ : state)
        {
            Paint(plate, form, L"/dev/null");
        }
        state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(Width * Height));
    }

    const bool Registered = []
    {
        for (const Kind kind : Plates::Kinds)
        {
            for (const Form& form : Forms)
            {
                const std::string name = std::string("painter/") + form.name + "/" + Pages::Name(kind);
                benchmark::RegisterBenchmark(
                    name.c_str(), [&form, kind](benchmark::State& state) { RunPainter(state, form, kind); })
                    ->Unit(benchmark::kMillisecond);
            }
        }
        return true;
    }();
}
