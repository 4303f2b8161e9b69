// The byte-run searches on runs without a difference, the longest way through them, beside memcpy of the same bytes.
// Prints bytes of input per second; the medians of the repetitions are what to compare.
#include <PixelScan.h>

#include <benchmark/benchmark.h>
#include <hwy/targets.h>

#include <cstdint>
#include <cstring>
#include <vector>

namespace
{
    using Byte = unsigned char;

    constexpr Byte paper = 0xFF;

    void Report(benchmark::State& state)
    {
        state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * state.range(0));
    }

    void Memcpy(benchmark::State& state)
    {
        const std::vector<Byte> run(static_cast<std::size_t>(state.range(0)), paper);
        std::vector<Byte> copy(run.size());
        for (auto _ : state)
        {
            std::memcpy(copy.data(), run.data(), run.size());
            benchmark::ClobberMemory();
        }
        Report(state);
    }

    // Runs `search` over a run of `value`, once it has found the one byte that differs there and none where none is.
    template <class Search>
    void TimeSearch(benchmark::State& state, Byte value, Search search)
    {
        std::vector<Byte> run(static_cast<std::size_t>(state.range(0)), value);
        const Byte* const begin = run.data();
        const Byte* const end = begin + run.size();
        run.back() ^= 1;
        const bool foundTheLast = search(begin, end) == end - 1;
        run.back() ^= 1;
        if (!foundTheLast || search(begin, end) != end)
        {
            state.SkipWithError("the search went wrong");
            return;
        }
        for (auto _ : state)
        {
            benchmark::DoNotOptimize(search(begin, end));
        }
        Report(state);
    }

    void firstNonZero(benchmark::State& state)
    {
        TimeSearch(state, 0, [](const Byte* begin, const Byte* end) { return PixelScan::firstNonZero(begin, end); });
    }

    void firstOtherThan(benchmark::State& state)
    {
        TimeSearch(
            state, paper,
            [](const Byte* begin, const Byte* end) { return PixelScan::firstOtherThan(begin, end, paper); });
    }

    void Configure(benchmark::internal::Benchmark* bench)
    {
        // A tenth of a line, a line, a plane of a small preview, and a plane larger than the caches.
        bench->Arg(400)->Arg(4000)->Arg(1 << 20)->Arg(24 << 20)->Repetitions(7)->ReportAggregatesOnly();
    }

    BENCHMARK(Memcpy)->Apply(Configure);
    BENCHMARK(firstNonZero)->Apply(Configure);
    BENCHMARK(firstOtherThan)->Apply(Configure);
}

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    // The best target is the lowest bit of those that the machine has and the compiler can make code for.
    const std::int64_t targets = hwy::SupportedTargets() & HWY_TARGETS;
    benchmark::AddCustomContext("target", hwy::TargetName(targets & -targets));
    benchmark::AddCustomContext("build type", SHEETVANE_BUILD_TYPE);
    benchmark::AddCustomContext("input", "runs of one value");
    benchmark::RunSpecifiedBenchmarks();
}
