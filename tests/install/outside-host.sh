#!/usr/bin/env bash
# outside-host.sh CMAKE SOURCE_DIR BUILD_DIR CXX [CXX_FLAGS]
# Installs the build into an empty folder and uses it from outside: no file tells where it was built; every installed header
# compiles alone, in C++17 and C++20, by every compiler at hand, with warnings as errors; examples/host is built by
# find_package and by pkg-config, and what it writes passes the installed ppfinfo.
set -euo pipefail
cmake=$1 source=$2 build=$3 cxx=$4 flags=${5:-}

work=$(mktemp -d "${TMPDIR:-/tmp}/sheetvane-install.XXXXXX")
trap 'rm -rf "$work"' EXIT
prefix=$work/prefix
"$cmake" --install "$build" --prefix "$prefix" >/dev/null
libdir=$(dirname "$(find "$prefix" -name libSheetvane.so)")

say() { printf '%s\n' "$*"; }
fail() { say "FAILED: $*" >&2; exit 1; }

# Sanitizers' reports name the sources by their full paths, so what they instrument keeps those.
if [ -z "$flags" ]; then
    told=$(grep -rlF -e "$source" -e "$build" "$prefix" || true)
    [ -z "$told" ] || fail "these tell where they were built: $told"
fi

cd "$prefix/include/sheetvane"
headers=$(find . -name '*.h')
[ "$(wc -l <<<"$headers")" -ge 4 ] || fail "only these headers are installed: $headers"
compilers=$(for compiler in "$cxx" g++ clang++; do command -v "$compiler" || true; done | xargs -n 1 realpath | sort -u)
for header in $headers; do
    for compiler in $compilers; do
        for standard in c++17 c++20; do
            say "$(basename "$compiler") $standard ${header#./}"
            echo "#include <${header#./}>" | "$compiler" -std=$standard -I. -Wall -Wextra -Wpedantic -Wshadow \
                -Wconversion -Werror -fsyntax-only -x c++ -
        done
    done
done

separation=$(find "$source/examples" -name '*.tif*' | sort | head -n 1)
run_host() { # PROGRAM
    LD_LIBRARY_PATH=$libdir "$1" "$separation" "$work/out/card.ppf"
    "$prefix/bin/ppfinfo" --check "$work/out/card.ppf" || fail "$1 wrote a file that is not well formed"
    rm -r "$work/out"
    # A failure arrives as an exception of the host's, across the library's boundary.
    if message=$(LD_LIBRARY_PATH=$libdir "$1" "$work/missing.tif" "$work/out/card.ppf" 2>&1 >/dev/null); then
        fail "$1 took a missing TIFF for a separation"
    fi
    [ "$message" = "KX_ECIP3Exception: Problem converting TIFF files to CIP3" ] || fail "$1 said: $message"
    rm -r "$work/out"
}

cd "$work"
"$cmake" -S "$source/examples/host" -B by-cmake -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_CXX_COMPILER="$cxx" \
    -DCMAKE_CXX_FLAGS="$flags" >/dev/null
"$cmake" --build by-cmake
run_host by-cmake/host
LD_LIBRARY_PATH=$libdir by-cmake/plates "$work/out/poster.ppf" "$separation" "$separation" "$separation" "$separation"
"$prefix/bin/ppfinfo" --check "$work/out/poster.ppf" || fail "plates wrote a file that is not well formed"
rm -r "$work/out"

export PKG_CONFIG_PATH=$libdir/pkgconfig
[ "$(pkg-config --modversion sheetvane)" != "" ] || fail "pkg-config does not find sheetvane"
# shellcheck disable=SC2046,SC2086
"$cxx" -std=c++17 $flags "$source/examples/host/host.cpp" -o by-pkg-config $(pkg-config --cflags --libs sheetvane)
run_host ./by-pkg-config

for page in tiff2ppf pdf2ppf ppfinfo ppfwatch; do
    [ -s "$prefix/share/man/man1/$page.1" ] || fail "no manual page for $page"
    "$prefix/bin/$page" --version
done
say "The install tree serves hosts and people."
