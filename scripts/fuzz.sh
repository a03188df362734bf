#!/usr/bin/env bash
# Builds the libFuzzer targets with clang (AddressSanitizer and
# UndefinedBehaviorSanitizer on) into build-fuzz/ and runs each for a bounded
# time, FUZZ_SECONDS each (default 60), from the seed corpus in fuzz/corpus.
# A crash or a sanitizer report fails the script and leaves the input in
# build-fuzz/findings/.
set -euo pipefail
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
build_dir="${BUILD_DIR:-$root/build-fuzz}"
seconds="${FUZZ_SECONDS:-60}"

bash "$root/scripts/install-deps.sh" fuzz
cmake -S "$root" -B "$build_dir" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCMAKE_CXX_COMPILER=clang++ \
  -DRENDERWIDGET_FUZZ=ON -DRENDERWIDGET_BUILD_TESTS=OFF > "$build_dir.configure.log" 2>&1 \
  || { cat "$build_dir.configure.log"; exit 1; }
cmake --build "$build_dir" --parallel "${JOBS:-2}" --target fuzz_urdf_loader fuzz_sentence_fitting

# The URDF seeds: the bundled robot, the loader's test descriptions and past findings.
work="$build_dir/corpus"
mkdir -p "$work/urdf" "$work/sentence" "$build_dir/findings"
cp "$root"/media/robots/zel/zel.urdf "$work/urdf/"
find "$root/world_model/tests/data" -name '*.urdf' -exec cp {} "$work/urdf/" \;
cp "$root"/fuzz/corpus/urdf/* "$work/urdf/"  # inputs that once failed
cp "$root"/fuzz/corpus/sentence/* "$work/sentence/"

run() {
  local target="$1" corpus="$2"
  shift 2
  echo "fuzz: $target for ${seconds}s"
  "$build_dir/fuzz/$target" "$corpus" -max_total_time="$seconds" -print_final_stats=1 \
    -artifact_prefix="$build_dir/findings/$target-" "$@" 2>&1 | tail -n 12
  return "${PIPESTATUS[0]}"
}
export ASAN_OPTIONS="detect_leaks=1:detect_odr_violation=0"
export UBSAN_OPTIONS="print_stacktrace=1:halt_on_error=1"
run fuzz_urdf_loader "$work/urdf" -dict="$root/fuzz/urdf.dict" -max_len=16384
run fuzz_sentence_fitting "$work/sentence" -max_len=2048
echo "fuzz: no crash and no sanitizer report"
