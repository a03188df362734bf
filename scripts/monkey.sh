#!/usr/bin/env bash
# The long monkey run: 10 000 random inputs (MONKEY_INPUTS) from a fixed seed
# against the 3D view, under a virtual X server when there is no display.
set -euo pipefail
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
build_dir="${BUILD_DIR:-$root/build}"
bash "$root/scripts/install-deps.sh"
BUILD_DIR="$build_dir" bash "$root/scripts/build.sh"
scratch="$(mktemp -d)"
trap 'rm -rf "$scratch"' EXIT
export XDG_CONFIG_HOME="$scratch/config" XDG_DATA_HOME="$scratch/data" MONKEY_INPUTS="${MONKEY_INPUTS:-10000}"
bash "$root/scripts/with-display.sh" "$build_dir/tests/monkey_test"
