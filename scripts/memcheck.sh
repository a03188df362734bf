#!/usr/bin/env bash
# Runs a chosen set of tests (3D view, picking, dragging, container) under
# valgrind's memcheck and fails on any error or definite leak that passes
# through the project's own code. Slow (Mesa renders in software under
# valgrind): a few minutes. Reports land in build/memcheck/.
set -euo pipefail
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
build_dir="${BUILD_DIR:-$root/build}"

bash "$root/scripts/install-deps.sh" valgrind
BUILD_DIR="$build_dir" bash "$root/scripts/build.sh"

out="$build_dir/memcheck"
rm -rf "$out" && mkdir -p "$out"
# test binary : gtest filter
cases=(
  "render_widget_test:RenderWidget.ShownItRendersReadyOnce:RenderWidget.RobotRemovedClearsTheSelectionOnly"
  "render_widget_frame_test:ShownView.HundredCharactersAreCutAtASpace:Screenshots.HiddenBackgroundIsWhiteAndTheSkyComesBack"
  "selection_test:Picking.SixteenAndThirtyTwoBitIndicesGiveTheSameHits:Picking.LeftPressEmitsTheNameOrANullOneWithCtrlAsMultiSelect"
  "render_widget_drag_test:Drag.FirstStepStartsFromTheJointPosition:Drag.TheTwinFollowsWithItsOwnMirrorSign"
  "world_view_container_test:Container.ReadyWindowBringsTheViewpointMenuAndA25msTimer"
)
scratch="$(mktemp -d)"
trap 'rm -rf "$scratch"' EXIT
export XDG_CONFIG_HOME="$scratch/config" XDG_DATA_HOME="$scratch/data"
for entry in "${cases[@]}"; do
  binary="${entry%%:*}"
  filter="${entry#*:}"
  echo "memcheck: $binary ($filter)"
  bash "$root/scripts/with-display.sh" valgrind --tool=memcheck --leak-check=full --show-leak-kinds=definite \
    --errors-for-leak-kinds=definite --num-callers=40 --xml=yes --xml-file="$out/$binary.xml" \
    "$build_dir/tests/$binary" --gtest_filter="$filter" > "$out/$binary.log" 2>&1 || true
done
python3 "$root/scripts/memcheck_report.py" "$out"/*.xml
