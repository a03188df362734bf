#!/usr/bin/env bash
# Installs what is missing, builds, and makes the Debian package
# <build>/render-widget_<version>_<arch>.deb (build/ or $BUILD_DIR). Extra
# arguments go to cmake, e.g. -DRENDERWIDGET_BUILD_TESTS=OFF. Install the
# package with:  sudo apt install ./build/render-widget_0.1.0_amd64.deb
set -euo pipefail
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
build_dir="${BUILD_DIR:-$root/build}"
export BUILD_DIR="$build_dir"

bash "$root/scripts/install-deps.sh"
bash "$root/scripts/build.sh" "$@"
cd "$build_dir"
cpack -G DEB
ls -1 "$build_dir"/render-widget_*.deb
