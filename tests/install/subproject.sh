#!/usr/bin/env bash
# subproject.sh build FOLDER COMPILER FLAGS: takes the tree into another build, as static libraries, with
# a program there, and builds the same program against what that build installs.
# subproject.sh run FOLDER: runs them.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
mkdir -p "$2"
cd "$2"
if [[ $1 == build ]]; then
  compiler=$3
  read -ra flags <<<"$4"
  # A path with a blank; and no memory of what a parent has had before.
  rm -f "a build/CMakeCache.txt"
  cmake -S "$here/subproject" -B "a build" -G Ninja -DCMAKE_CXX_COMPILER="$compiler" -DCMAKE_CXX_FLAGS="$4" \
    -DZOBGP_INSTALL=ON >configured || { cat configured && exit 1; }
  cmake --build "a build"

  rm -rf staged prefix
  cmake --install "a build" --prefix "$PWD/staged" >/dev/null
  mv staged prefix

  # By CMake, by pkg-config, by hand; by a later standard.
  cmake -S "$here/static" -B static -G Ninja -DCMAKE_CXX_COMPILER="$compiler" -DCMAKE_CXX_FLAGS="$4" \
    -DCMAKE_PREFIX_PATH="$PWD/prefix" >configured || { cat configured && exit 1; }
  cmake --build static
  pc=$(dirname "$(find "$PWD/prefix" -name ZoBgpKinds.pc)")
  said=$(PKG_CONFIG_PATH=$pc pkg-config --static --cflags --libs ZoBgpKinds)
  eval "said=($said)"
  "$compiler" "${flags[@]}" -std=c++2b "$here/main.cpp" "${said[@]}" -o by-pkg-config
  library=$(dirname "$pc")
  "$compiler" "${flags[@]}" -std=c++20 -I prefix/include/ZoBgpCommunity "$here/main.cpp" -o by-hand -L "$library" \
    -Wl,--whole-archive -lZoBgpKinds -lZoBgpCommunity -lZoBgpPlatform -Wl,--no-whole-archive -pthread
  exit
fi
if find prefix -name '*.so*' -o -name bgpcomm | grep .; then exit 1; fi
"a build/parent"
static/program
./by-pkg-config
./by-hand
