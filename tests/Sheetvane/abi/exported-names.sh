#!/bin/sh
# Compares the names that a shared library exports with the committed list of them, so that a change is a decision.
#     exported-names.sh LIBRARY LIST
# To decide for the present names: exported-names.sh LIBRARY - > LIST
set -eu
library=$1
list=$2

# One name per line; several symbols of one name (constructors and destructors have up to three) count once. What
# AddressSanitizer adds to a library that is built with it is not part of the library.
names() {
    nm --dynamic --defined-only --demangle "$library" | cut --delimiter=' ' --fields=3- |
        grep --invert-match '^__odr_asan' | LC_ALL=C sort --unique
}

if [ "$list" = - ]; then
    names
else
    names | diff --unified "$list" -
fi
