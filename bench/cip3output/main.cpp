// Says what is measured, and on what, before Google Benchmark measures it.
#include "bench/cip3output/Plates.h"

#include <benchmark/benchmark.h>
#include <hwy/highway.h>
#include <hwy/targets.h>

#include <string>

int main(int argc, char** argv)
{
#ifdef NDEBUG
    benchmark::AddCustomContext("build", "optimised");
#else
    benchmark::AddCustomContext("build", "with assertions; do not quote these figures");
#endif
    const std::int64_t targets = hwy::SupportedTargets();
    benchmark::AddCustomContext("target of this machine", hwy::TargetName(targets & -targets));
    for (const Pages::Kind kind : Plates::Kinds)
    {
        benchmark::AddCustomContext(
            Pages::Name(kind), std::to_string(Plates::Width) + " x " + std::to_string(Plates::Height) + ", " +
                                   std::to_string(Pages::EqualNeighbours(Plates::Of(kind), Plates::Width)) +
                                   " of the bytes equal their neighbour");
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
    {
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
}
