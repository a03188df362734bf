#!/usr/bin/env bash
# Installs what is missing, builds the benchmark program in Release, runs it
# on an X display (a virtual one when none is set) and prints a short table.
# The figures land in $BUILD_DIR/benchmarks/results.json (BUILD_DIR defaults
# to build/); the program's own output in results.console.txt beside it.
# Extra arguments go to the program, e.g. --benchmark_filter=Pick
# See docs/performance.md for what is measured.
set -euo pipefail
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
build_dir="${BUILD_DIR:-$root/build}"

bash "$root/scripts/install-deps.sh"
cmake -S "$root" -B "$build_dir" -DCMAKE_BUILD_TYPE=Release -DRENDERWIDGET_WARNINGS_AS_ERRORS=ON \
  > "$build_dir.configure.log" 2>&1 || { cat "$build_dir.configure.log"; exit 1; }
cmake --build "$build_dir" --parallel "${JOBS:-2}" --target render_widget_benchmarks benchmark_results_table

results="$build_dir/benchmarks/results.json"
console="$build_dir/benchmarks/results.console.txt"
echo "benchmark: running (about 2 minutes); progress in $console"
start=$(date +%s)
if ! bash "$root/scripts/with-display.sh" "$build_dir/benchmarks/render_widget_benchmarks" \
    --benchmark_out="$results" --benchmark_out_format=json "$@" > "$console" 2>&1; then
  tail -n 40 "$console"
  echo "benchmark: the program failed; see $console" >&2
  exit 1
fi
echo
"$build_dir/benchmarks/benchmark_results_table" "$results"
echo
echo "benchmark: $(( $(date +%s) - start )) s, load average at the end $(cut -d' ' -f1-3 /proc/loadavg);" \
  "figures in $results"
