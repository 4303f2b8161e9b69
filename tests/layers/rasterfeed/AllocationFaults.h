// Memory that runs out: the n-th allocation by operator new fails, and all behind it.
#pragma once

/// From now on `allocations` more succeed; negative: all do.
void AllowAllocations(int allocations);
