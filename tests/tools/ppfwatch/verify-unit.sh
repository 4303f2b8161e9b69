#!/usr/bin/env bash
# verify-unit.sh SYSTEMD_ANALYZE UNIT PROGRAM
# Fails if systemd finds anything to say about the unit, with PROGRAM where the installed one would be.
set -euo pipefail
analyze=$1 unit=$2 program=$3

work=$(mktemp -d "${TMPDIR:-/tmp}/ppfwatch-unit.XXXXXX")
trap 'rm -rf "$work"' EXIT
sed "s|^ExecStart=[^ ]*|ExecStart=$program|" "$unit" >"$work/$(basename "$unit")"
found=$("$analyze" verify --man=no --recursive-errors=no "$work/$(basename "$unit")" 2>&1) || { echo "$found" >&2; exit 1; }
[ -z "$found" ] || { echo "$found" >&2; exit 1; }
