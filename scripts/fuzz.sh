#!/usr/bin/env bash
# Builds the libFuzzer targets with clang (AddressSanitizer and
# UndefinedBehaviorSanitizer on) into build-fuzz/ and runs each for a bounded
# time, FUZZ_SECONDS each (default 60), from the seed corpus in fuzz/corpus.
# FUZZ_TARGETS chooses some of them (default: all three, space-separated).
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
targets=(${FUZZ_TARGETS:-fuzz_urdf_loader fuzz_mesh_loader fuzz_sentence_fitting})
cmake --build "$build_dir" --parallel "${JOBS:-2}" --target "${targets[@]}"

# The URDF seeds: the bundled robot, the loader's test descriptions and past findings.
work="$build_dir/corpus"
mkdir -p "$work/urdf" "$work/mesh" "$work/sentence" "$build_dir/findings"
cp "$root"/media/robots/zel/zel.urdf "$work/urdf/"
find "$root/world_model/tests/data" -name '*.urdf' -exec cp {} "$work/urdf/" \;
cp "$root"/fuzz/corpus/urdf/* "$work/urdf/"  # inputs that once failed
cp "$root"/fuzz/corpus/sentence/* "$work/sentence/"
# The mesh seeds: a selector byte (0 STL, 1 OBJ with its MTL, 2 COLLADA), then the file.
cp "$root"/fuzz/corpus/mesh/* "$work/mesh/"

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
for target in "${targets[@]}"; do
  case "$target" in
    fuzz_urdf_loader) run "$target" "$work/urdf" -dict="$root/fuzz/urdf.dict" -max_len=16384 ;;
    # Assimp 5.2 leaks on some failed reads (allocations made inside libassimp):
    # not ours to judge, so no leak check for this target.
    fuzz_mesh_loader) ASAN_OPTIONS="detect_leaks=0:detect_odr_violation=0" \
      run "$target" "$work/mesh" -dict="$root/fuzz/mesh.dict" -max_len=8192 -timeout=20 ;;
    fuzz_sentence_fitting) run "$target" "$work/sentence" -max_len=2048 ;;
    *) echo "fuzz: unknown target $target" >&2; exit 2 ;;
  esac
done
echo "fuzz: no crash and no sanitizer report"
