#!/usr/bin/env bash
# Installs the Debian 12 packages needed to build, test and run the project.
# Idempotent: does nothing when every package is already installed, and runs
# `apt-get update` only when something is missing.
set -euo pipefail

packages=(
  # toolchain
  cmake g++ pkg-config ccache
  # the Debian package: dpkg-shlibdeps finds its dependencies
  dpkg-dev
  # Qt 5
  qtbase5-dev libqt5x11extras5-dev
  # OGRE 1.12 and its image codec
  libogre-1.12-dev libfreeimage-dev
  # platform libraries we build on
  libboost-dev libeigen3-dev liburdfdom-dev libtinyxml2-dev libassimp-dev
  # tests and benchmarks
  googletest libgmock-dev libbenchmark-dev
  # a virtual X server with Mesa's software OpenGL, and the overlay font
  xvfb xauth x11-utils libgl1-mesa-dri fonts-dejavu-core
)

# Optional groups for the reliability tools: `install-deps.sh fuzz valgrind`.
for group in "$@"; do
  case "$group" in
    fuzz) packages+=(clang-14 libclang-rt-14-dev) ;;
    valgrind) packages+=(valgrind) ;;
    *) echo "install-deps: unknown group $group" >&2; exit 2 ;;
  esac
done

missing=()
for package in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$package")
  fi
done

if [ ${#missing[@]} -eq 0 ]; then
  echo "install-deps: all ${#packages[@]} packages present"
  exit 0
fi

echo "install-deps: installing ${missing[*]}"
sudo_cmd=()
[ "$(id -u)" -ne 0 ] && sudo_cmd=(sudo)
export DEBIAN_FRONTEND=noninteractive
"${sudo_cmd[@]}" apt-get update -qq
"${sudo_cmd[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
