// Which of Highway's targets a machine has, from the extensions of its processor. Apart from Targets.cpp, so that tests
// can ask about machines other than theirs.
#pragma once

#include <cstdint>

namespace Highway
{
    /// Tells whether programs can use an extension, given by its number in <sys/platform/x86.h>, x86_cpu_AVX2 and so on.
    using IsActive = bool (*)(unsigned extension);

    /// The targets, as bits of <hwy/detect_targets.h>, all of whose extensions are active. What the compiler may assume
    /// of every machine is not among them. Only for x86.
    std::int64_t TargetsWith(IsActive isActive);
}
