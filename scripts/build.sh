#!/usr/bin/env bash
# Configures and builds the project into build/ (or $BUILD_DIR).
# BUILD_TYPE=Debug|Release (default Release); extra arguments go to cmake.
set -euo pipefail
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
build_dir="${BUILD_DIR:-$root/build}"
# A compiler cache, when installed, lets rebuilds and sibling build trees reuse objects.
launcher=()
command -v ccache >/dev/null 2>&1 && launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache -DCMAKE_C_COMPILER_LAUNCHER=ccache)
cmake -S "$root" -B "$build_dir" -DCMAKE_BUILD_TYPE="${BUILD_TYPE:-Release}" \
  -DRENDERWIDGET_WARNINGS_AS_ERRORS=ON "${launcher[@]}" "$@" > "$build_dir.configure.log" 2>&1 \
  || { cat "$build_dir.configure.log"; exit 1; }
cmake --build "$build_dir" --parallel "${JOBS:-2}"
