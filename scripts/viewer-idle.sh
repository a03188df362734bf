#!/usr/bin/env bash
# Idle cost of the viewer: it shows a robot standing still (render on
# change is on by default) on a virtual X server when none is set, and the
# CPU of all its threads is read from /proc over IDLE_SECONDS (default 20)
# after IDLE_SETTLE seconds of start-up (default 5). Prints the percentage
# of one core. The robot defaults to the shared humanoid beside the source
# tree; pass another URDF as the argument. Builds nothing: run
# scripts/build.sh first (BUILD_DIR as for the other scripts).
set -euo pipefail
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
build_dir="${BUILD_DIR:-$root/build}"
viewer="$build_dir/bin/render_widget_viewer"
robot="${1:-$root/../shared/bench/humanoid_26.urdf}"
[ -x "$viewer" ] || { echo "viewer-idle: no $viewer; build first" >&2; exit 1; }
[ -f "$robot" ] || { echo "viewer-idle: no robot file $robot" >&2; exit 1; }

scratch="$(mktemp -d)"
trap 'rm -rf "$scratch"' EXIT
# Fresh settings: the run does not touch the user's.
export XDG_CONFIG_HOME="$scratch/config" XDG_DATA_HOME="$scratch/data"

cat > "$scratch/run.sh" <<'INNER'
#!/usr/bin/env bash
set -euo pipefail
viewer="$1" robot="$2" seconds="$3" settle="$4" log="$5"
"$viewer" --3d "$robot" > "$log" 2>&1 &
pid=$!
# Nanoseconds on CPU of every thread: finer than the 10 ms ticks of /proc/<pid>/stat.
cpu_ns() { cat /proc/"$pid"/task/*/schedstat | awk '{sum += $1} END {printf "%d", sum}'; }
sleep "$settle"
kill -0 "$pid" 2>/dev/null || { echo "viewer-idle: the viewer stopped:" >&2; cat "$log" >&2; exit 1; }
before=$(cpu_ns)
sleep "$seconds"
after=$(cpu_ns)
kill "$pid"
wait "$pid" 2>/dev/null || true
awk -v ns=$((after - before)) -v s="$seconds" \
  'BEGIN {printf "viewer-idle: %.2f %% of a core over %d s\n", ns / 1e7 / s, s}'
INNER
bash "$root/scripts/with-display.sh" bash "$scratch/run.sh" "$viewer" "$robot" \
  "${IDLE_SECONDS:-20}" "${IDLE_SETTLE:-5}" "$scratch/viewer.log"
