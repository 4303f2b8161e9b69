// The kernels on every kind of vectors that this machine has, line by line over a whole separation, beside memcpy of the
// same lines. Each is checked against the plain loop before it is timed.
#include "bench/cip3output/Plates.h"
#include "cip3output/kernels/ASCII85.h"
#include "cip3output/kernels/ASCIIHex.h"
#include "cip3output/kernels/Invert.h"
#include "cip3output/kernels/RunLength.h"
#include "tests/cip3output/PlainLoops.h"

#include <benchmark/benchmark.h>
#include <hwy/highway.h>
#include <hwy/targets.h>

#include <cstring>
#include <string>
#include <vector>

namespace
{
    using namespace RasterOutput;
    using Pages::Kind;

    using Plates::Height;
    using Plates::Width;

    /// What is done to one line: gives what has become of it, in the line itself or in `output`, which has space for twice as much.
    struct Result
    {
        const unsigned char* begin;
        const unsigned char* end;
    };
    using LineStep = Result (*)(unsigned char* line, unsigned char* output);

    struct Step
    {
        const char* name;
        LineStep run;
        std::string (*truth)(const std::string& line);
    };

    Result Copy(unsigned char* line, unsigned char* output)
    {
        std::memcpy(output, line, Width);
        return {output, output + Width};
    }

    Result Invert(unsigned char* line, unsigned char*)
    {
        Kernels::InvertBytes(line, Width);
        return {line, line + Width};
    }

    Result RunLength(unsigned char* line, unsigned char* output)
    {
        return {output, Kernels::EncodeRunLength(line, Width, output)};
    }

    Result ASCIIHex(unsigned char* line, unsigned char* output)
    {
        return {output, Kernels::EncodeASCIIHex(line, Width, output)};
    }

    Result ASCII85(unsigned char* line, unsigned char* output)
    {
        return {output, Kernels::EncodeASCII85(line, Width / 4, output)};
    }

    constexpr Step Memcpy = {"memcpy", Copy, [](const std::string& line) { return line; }};

    /// Those of which the compiler makes vectors.
    constexpr Step PlainSteps[] = {
        {"invert", Invert, PlainLoops::Invert},
        {"ascii_hex", ASCIIHex, PlainLoops::ASCIIHex},
    };

    /// Those that are compiled for every target.
    constexpr Step Steps[] = {
        {"run_length", RunLength, PlainLoops::RunLength},
        {"ascii85", ASCII85, PlainLoops::ASCII85},
    };

    void SelectTarget(std::int64_t target)
    {
        // Never without the target that everything was compiled for, or there might be nothing to choose.
        hwy::SetSupportedTargetsForTest(target == 0 ? 0 : target | HWY_STATIC_TARGET);
        hwy::GetChosenTarget().Update(hwy::SupportedTargets());
    }

    unsigned char* LineOf(std::string& image, std::size_t y)
    {
        return reinterpret_cast<unsigned char*>(image.data()) + y * Width;
    }

    bool IsRight(const Step& step, std::string& image, std::vector<unsigned char>& output)
    {
        for (std::size_t y = 0; y < Height; ++y)
        {
            const std::string line = image.substr(y * Width, Width);
            const Result result = step.run(LineOf(image, y), output.data());
            if (std::string(result.begin, result.end) != step.truth(line))
            {
                return false;
            }
        }
        return true;
    }

    void RunSteps(benchmark::State& state, const Step& step, Kind kind, std::int64_t target)
    {
        const std::vector<std::uint8_t>& plate = Plates::Of(kind);
        std::string image(plate.begin(), plate.end());
        std::vector<unsigned char> output(2 * Width);
        SelectTarget(target);
        if (!IsRight(step, image, output))
        {
            state.SkipWithError("differs from the plain loop");
            return;
        }
        for (auto _ : state)
        {
            for (std::size_t y = 0; y < Height; ++y)
            {
                benchmark::DoNotOptimize(step.run(LineOf(image, y), output.data()));
                benchmark::ClobberMemory();
            }
        }
        SelectTarget(0);
        state.SetBytesProcessed(
            state.iterations() * static_cast<std::int64_t>(Width) * static_cast<std::int64_t>(Height));
    }

    const bool Registered = []
    {
        for (const Kind kind : Plates::Kinds)
        {
            const auto add = [kind](const Step& step, const std::string& targetName, std::int64_t target)
            {
                const std::string name = std::string(step.name) + "/" + targetName + "/" + Pages::Name(kind);
                benchmark::RegisterBenchmark(
                    name.c_str(),
                    [step, kind, target](benchmark::State& state) { RunSteps(state, step, kind, target); })
                    ->Unit(benchmark::kMillisecond);
            };
            add(Memcpy, "libc", 0);
            for (const Step& step : PlainSteps)
            {
                add(step, "compiler", 0);
            }
            for (const Step& step : Steps)
            {
                for (std::int64_t targets = hwy::SupportedTargets(); targets != 0; targets &= targets - 1)
                {
                    const std::int64_t target = targets & -targets;
                    if (target < HWY_SSSE3 * 2)
                    {
                        add(step, hwy::TargetName(target), target);
                    }
                }
            }
        }
        return true;
    }();
}
