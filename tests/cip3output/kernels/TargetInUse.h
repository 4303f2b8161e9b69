// Which target's code really runs.
#pragma once

#include <cstdint>

namespace CIP3OutputTest
{
    /// The target, a bit of <hwy/detect_targets.h>, whose code a kernel that is called now would run.
    std::int64_t TargetInUse();
}
