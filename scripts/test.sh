#!/usr/bin/env bash
# Installs what is missing, builds, and runs every test (on a virtual X
# server when there is no display). Exits non-zero when any test fails.
set -euo pipefail
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
build_dir="${BUILD_DIR:-$root/build}"
export BUILD_DIR="$build_dir"

bash "$root/scripts/install-deps.sh"
bash "$root/scripts/build.sh"

# Tests write settings and logs under a scratch home, never the user's.
scratch="$(mktemp -d)"
trap 'rm -rf "$scratch"' EXIT
export XDG_CONFIG_HOME="$scratch/config" XDG_DATA_HOME="$scratch/data" XDG_CACHE_HOME="$scratch/cache"

cd "$build_dir"
bash "$root/scripts/with-display.sh" ctest --output-on-failure --timeout 600 -j "${JOBS:-2}" "$@"
