#!/usr/bin/env bash
# Renders the 2D view's pictures of the bundled robot again, into
# media/images/ogre/ (they are kept in the source tree) or the folder given
# as argument. Builds the renderer (tools/bitmap_pictures) in build/ (or
# $BUILD_DIR) first and runs it on the display, or under Xvfb without one.
# After a change of the robot, its pose or the layout, run the pictures test:
# the 2D view's clickable rectangles are fixed and must still fit.
set -euo pipefail
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
build_dir="${BUILD_DIR:-$root/build}"
output="${1:-$root/media/images/ogre}"

mkdir -p "$build_dir"
cmake -S "$root" -B "$build_dir" -DRENDERWIDGET_WARNINGS_AS_ERRORS=ON > "$build_dir.configure.log" 2>&1 \
  || { cat "$build_dir.configure.log"; exit 1; }
cmake --build "$build_dir" --parallel "${JOBS:-2}" --target bitmap_picture_renderer
bash "$root/scripts/with-display.sh" "$build_dir/tools/bitmap_pictures/bitmap_picture_renderer" "$output"
echo "render-pictures: wrote the pictures to $output"
