#!/usr/bin/env bash
# Soak run: the viewer shows the bundled robot with every joint moving
# (--animate) for SOAK_SECONDS (default 600) on a virtual X server, and its
# resident memory is sampled every SOAK_SAMPLE seconds (default 10). Prints
# each sample, then the growth per minute after the first minute. Builds
# nothing: run scripts/build.sh first (BUILD_DIR as for the other scripts).
set -euo pipefail
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
build_dir="${BUILD_DIR:-$root/build}"
seconds="${SOAK_SECONDS:-600}"
sample="${SOAK_SAMPLE:-10}"
viewer="$build_dir/bin/render_widget_viewer"
[ -x "$viewer" ] || { echo "soak: no $viewer; build first" >&2; exit 1; }

scratch="$(mktemp -d)"
trap 'rm -rf "$scratch"' EXIT
# Fresh settings and OGRE log: the run does not touch the user's.
export XDG_CONFIG_HOME="$scratch/config" XDG_DATA_HOME="$scratch/data"

cat > "$scratch/run.sh" <<'INNER'
#!/usr/bin/env bash
set -euo pipefail
viewer="$1" seconds="$2" sample="$3" log="$4"
"$viewer" --3d --animate > "$log" 2>&1 &
pid=$!
start=$(date +%s)
echo "seconds rss_kb"
while kill -0 "$pid" 2>/dev/null; do
  now=$(( $(date +%s) - start ))
  rss=$(awk '/^VmRSS:/ {print $2}' "/proc/$pid/status" 2>/dev/null || true)
  [ -n "$rss" ] && echo "$now $rss"
  # The viewer reports a start-up failure on stderr, then waits on a message box.
  if grep -q "^render_widget_viewer: " "$log"; then
    echo "soak: the viewer did not start:" >&2
    cat "$log" >&2
    kill "$pid"
    exit 1
  fi
  [ "$now" -ge "$seconds" ] && break
  sleep "$sample"
done
if ! kill -0 "$pid" 2>/dev/null; then
  echo "soak: the viewer ended early; its output:" >&2
  cat "$log" >&2
  exit 1
fi
kill "$pid"
wait "$pid" 2>/dev/null || true
INNER

bash "$root/scripts/with-display.sh" bash "$scratch/run.sh" "$viewer" "$seconds" "$sample" "$scratch/viewer.log" \
  | tee "$scratch/samples.txt"

# Growth per minute: a least-squares line through the samples after the first minute.
awk 'NR > 1 && $1 >= 60 { n++; sx += $1; sy += $2; sxx += $1 * $1; sxy += $1 * $2; last = $2 }
     NR > 1 && $1 < 60 { first = $2 }
     END {
       if (n < 2) { print "soak: too few samples after the first minute" > "/dev/stderr"; exit 1 }
       slope = (n * sxy - sx * sy) / (n * sxx - sx * sx)
       printf "soak: resident memory %.1f MB after the first minute, %.1f MB at the end\n", first / 1024, last / 1024
       printf "soak: growth %.3f MB per minute after the first minute (%d samples)\n", slope * 60 / 1024, n
     }' "$scratch/samples.txt"
