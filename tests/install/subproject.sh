#!/usr/bin/env bash
# subproject.sh COMPILER [FLAG...]: takes the tree into another build, as static libraries, runs a
# program there, and builds the same program against what that build installs.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
compiler=$1
shift 1

# A path with a blank.
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
cd "$scratch"
cmake -S "$here/subproject" -B "a build" -G Ninja -DCMAKE_CXX_COMPILER="$compiler" -DCMAKE_CXX_FLAGS="$*" \
  -DZOBGP_INSTALL=ON >configured || { cat configured && exit 1; }
cmake --build "a build"
"a build/parent"

cmake --install "a build" --prefix "$scratch/staged" >/dev/null
mv staged prefix
if find prefix -name '*.so*' -o -name bgpcomm | grep .; then exit 1; fi

# By CMake, by pkg-config, by hand; by a later standard.
cmake -S "$here/static" -B static -G Ninja -DCMAKE_CXX_COMPILER="$compiler" -DCMAKE_CXX_FLAGS="$*" \
  -DCMAKE_PREFIX_PATH="$scratch/prefix" >configured || { cat configured && exit 1; }
cmake --build static
static/program
pc=$(dirname "$(find "$scratch/prefix" -name ZoBgpKinds.pc)")
flags=$(PKG_CONFIG_PATH=$pc pkg-config --static --cflags --libs ZoBgpKinds)
"$compiler" "$@" "$here/main.cpp" $flags -std=c++2b -o by-pkg-config
./by-pkg-config
library=$(dirname "$pc")
"$compiler" "$@" -std=c++20 -I prefix/include/ZoBgpCommunity "$here/main.cpp" -o by-hand -L "$library" \
  -Wl,--whole-archive -lZoBgpKinds -lZoBgpCommunity -lZoBgpPlatform -Wl,--no-whole-archive -pthread
./by-hand
