#!/usr/bin/env bash
# Installs the Debian packages the build, the tests, the fuzz targets, the benchmarks and the
# reference (Doxygen) need;
# with --windows also those of the Windows build (mingw-w64 with POSIX threads, wine to run what
# it builds, and GoogleTest's sources, which it builds for Windows itself: some 1 GB); and any
# further packages named as arguments. Does nothing when they are all present, so repeated runs
# stay offline and fast.
set -euo pipefail

packages=(g++ cmake ninja-build libgtest-dev libgmock-dev libbenchmark-dev clang-format binutils
          clang libclang-rt-14-dev pkgconf doxygen man-db)
if [ "${1:-}" = --windows ]; then
    shift
    packages+=(g++-mingw-w64-x86-64-posix gcc-mingw-w64-x86-64-posix binutils-mingw-w64-x86-64
               mingw-w64-x86-64-dev wine wine64 googletest)
fi
packages+=("$@")

missing=()
for p in "${packages[@]}"; do
    if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed'; then
        missing+=("$p")
    fi
done
[ ${#missing[@]} -eq 0 ] && exit 0

sudo_cmd=()
if [ "$(id -u)" -ne 0 ]; then sudo_cmd=(sudo); fi
echo "installing: ${missing[*]}"
"${sudo_cmd[@]}" apt-get update -qq
DEBIAN_FRONTEND=noninteractive "${sudo_cmd[@]}" apt-get install -y -qq --no-install-recommends \
    "${missing[@]}"
