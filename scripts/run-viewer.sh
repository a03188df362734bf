#!/usr/bin/env bash
# Installs what is missing, builds, and runs the viewer on the bundled robot:
# on the current display, or, without one, headless under Xvfb writing a
# screenshot (viewer-screenshot.png, or the path in $SCREENSHOT).
set -euo pipefail
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
export BUILD_DIR="${BUILD_DIR:-$root/build}"

bash "$root/scripts/install-deps.sh"
bash "$root/scripts/build.sh"

viewer="$BUILD_DIR/bin/render_widget_viewer"
if [ ! -x "$viewer" ]; then
  echo "run-viewer: the build left no $viewer" >&2
  exit 1
fi
if [ -n "${DISPLAY:-}" ] && xdpyinfo >/dev/null 2>&1; then
  exec "$viewer" "$@"
fi
screenshot="${SCREENSHOT:-$root/viewer-screenshot.png}"
bash "$root/scripts/with-display.sh" "$viewer" --screenshot "$screenshot" "$@"
echo "run-viewer: no display; rendered headless to $screenshot"
