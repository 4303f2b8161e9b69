// The mark of what leaves the shared library: all names are hidden unless their declaration carries it. It stands alone
// so that a host's compiler can read the headers that use it without any other library installed.
#pragma once

#if defined(__GNUC__)
#define SHEETVANE_EXPORT __attribute__((visibility("default")))
#else
#define SHEETVANE_EXPORT
#endif
