#!/usr/bin/env bash
# Runs a command on the current X display, or on a virtual one (Xvfb with
# Mesa's software OpenGL) when none is set.
set -euo pipefail
if [ -n "${DISPLAY:-}" ] && xdpyinfo >/dev/null 2>&1; then
  exec "$@"
fi
exec xvfb-run --auto-servernum --server-args="-screen 0 1920x1080x24 +extension GLX +render -noreset" "$@"
