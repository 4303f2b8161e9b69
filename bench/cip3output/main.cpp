// Says what is measured, and on what, before Google Benchmark measures it.
#include "PreviewImage.h"

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
    for (const PreviewImage::Kind kind :
         {PreviewImage::Kind::Flat, PreviewImage::Kind::Photo, PreviewImage::Kind::Noise})
    {
        benchmark::AddCustomContext(
            PreviewImage::NameOf(kind), std::to_string(PreviewImage::Width) + " x " +
                                            std::to_string(PreviewImage::Height) + ", equal neighbours " +
                                            std::to_string(PreviewImage::Of(kind).EqualNeighbours()));
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
    {
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
}
