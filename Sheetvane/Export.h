// Marks what hosts link to: everything else of the library is hidden.
#pragma once

#define SHEETVANE_API __attribute__((visibility("default")))
