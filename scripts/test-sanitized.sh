#!/usr/bin/env bash
# Builds the project with AddressSanitizer and UndefinedBehaviorSanitizer
# into build-sanitized/ and runs the whole test suite on a virtual X server
# when there is no display: memory errors and undefined behaviour (leaks are
# scripts/memcheck.sh's). Third-party suppressions: scripts/sanitizers.supp.
set -euo pipefail
root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
build_dir="${BUILD_DIR:-$root/build-sanitized}"

bash "$root/scripts/install-deps.sh"
BUILD_DIR="$build_dir" BUILD_TYPE=RelWithDebInfo bash "$root/scripts/build.sh" -DRENDERWIDGET_SANITIZE=ON

supp="$(mktemp -d)"
trap 'rm -rf "$supp"' EXIT
sed -n 's/^ubsan://p' "$root/scripts/sanitizers.supp" > "$supp/ubsan.supp"
# Memory errors and undefined behaviour; leaks are memcheck's (see the suppression file).
export ASAN_OPTIONS="detect_leaks=0:halt_on_error=1:detect_odr_violation=0"
export UBSAN_OPTIONS="suppressions=$supp/ubsan.supp:print_stacktrace=1:halt_on_error=1"

scratch="$(mktemp -d)"
export XDG_CONFIG_HOME="$scratch/config" XDG_DATA_HOME="$scratch/data"
cd "$build_dir"
status=0
bash "$root/scripts/with-display.sh" ctest --output-on-failure --timeout 900 -j "${JOBS:-2}" "$@" || status=$?
rm -rf "$scratch"
exit $status
