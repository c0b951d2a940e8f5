#!/usr/bin/env bash
# Installs the Debian packages needed to build and test the library, and only those missing.
# Safe to run again: when everything is present it prints one line and changes nothing.
set -euo pipefail

# libgtest-dev brings GoogleTest's CMake package (GTestConfig.cmake) that the test build finds;
# python3-numpy lets the test of the Python reading example run instead of being skipped.
# libxxhash-dev gives the hash of the page checksums (python3-xxhash lets the test of the
# documented page check run); clang and libclang-rt-14-dev build the fuzz driver of tests/fault;
# libhdf5-dev is the baseline that bench_endtoend measures against. libcli11-dev parses the odb
# tool's command line (a header-only library, so nothing of it is linked or installed);
# python3-vtk9 is an independent VTK reader that the tool's export test reads its files back with.
# python3-pybind11 and python3-dev build the Python module (python/), python3-numpy gives it its
# arrays, and python3-pytest and python3-dask run its tests and its Dask example.
packages=(g++ cmake make pkg-config libsqlite3-dev libgtest-dev git python3-numpy libxxhash-dev
          python3-xxhash clang libclang-rt-14-dev libhdf5-dev libcli11-dev python3-vtk9
          python3-pybind11 python3-dev python3-pytest python3-dask)

missing=()
for p in "${packages[@]}"; do
  status=$(dpkg-query -W -f='${Status}' "$p" 2>/dev/null || true)
  if [[ "$status" != "install ok installed" ]]; then
    missing+=("$p")
  fi
done

if ((${#missing[@]} == 0)); then
  echo "setup: all build packages present"
  exit 0
fi

if [[ $(id -u) -eq 0 ]]; then
  as_root=()
elif command -v sudo >/dev/null 2>&1; then
  as_root=(sudo)
else
  echo "setup: missing packages: ${missing[*]}" >&2
  echo "setup: not root and no sudo; install them as root with: apt-get install ${missing[*]}" >&2
  exit 1
fi

echo "setup: installing ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get update -q
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -q --no-install-recommends \
  "${missing[@]}"
