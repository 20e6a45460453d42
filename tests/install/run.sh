#!/usr/bin/env bash
# run.sh BUILD_FOLDER COMPILER [FLAG...]: installs into a folder of its own, moves that elsewhere,
# and builds and runs a small agent against it.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
build=$1 compiler=$2
shift 2

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
cmake --install "$build" --prefix "$scratch/staged" >/dev/null
mv "$scratch/staged" "$scratch/prefix"

cmake -S "$here" -B "$scratch/build" -G Ninja -DCMAKE_CXX_COMPILER="$compiler" \
  -DCMAKE_CXX_FLAGS="$*" -DCMAKE_PREFIX_PATH="$scratch/prefix"
cmake --build "$scratch/build"
"$scratch/build/agent"
if [[ -x $scratch/build/reader ]]; then "$scratch/build/reader" samples/rib.bird.mrt.gz; fi
if [[ -x $scratch/prefix/bin/bgpcomm ]]; then "$scratch/prefix/bin/bgpcomm" --help; fi
