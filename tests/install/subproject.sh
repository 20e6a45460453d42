#!/usr/bin/env bash
# subproject.sh build FOLDER COMPILER FLAGS C_COMPILER: takes the tree into another build, as static libraries, with
# a program there, and builds the same program against what that build installs; and, with the MRT reader,
# one in C against what is installed then.
# subproject.sh run FOLDER: runs them.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
mkdir -p "$2"
cd "$2"
if [[ $1 == build ]]; then
  compiler=$3 flag_words=$4 c_compiler=$5
  read -ra flags <<<"$4"
  # take_in PREFIX OPTION...: the tree in another build, which is installed, and moved.
  take_in() {
    # A path with a blank; and no memory of what a parent has had before.
    rm -f "a build/CMakeCache.txt"
    cmake -S "$here/subproject" -B "a build" -G Ninja -DCMAKE_CXX_COMPILER="$compiler" -DCMAKE_CXX_FLAGS="$flag_words" \
      -DZOBGP_INSTALL=ON "${@:2}" >configured || { cat configured && exit 1; }
    cmake --build "a build"
    rm -rf staged "$1"
    cmake --install "a build" --prefix "$PWD/staged" >/dev/null
    mv staged "$1"
  }
  take_in prefix

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

  # In C, with paths of files.
  take_in prefix-with-files -DZOBGP_MRT=ON
  cmake -S "$here/c" -B c -G Ninja -DCMAKE_C_COMPILER="$c_compiler" -DCMAKE_C_FLAGS="$4" \
    -DCMAKE_PREFIX_PATH="$PWD/prefix-with-files" >configured || { cat configured && exit 1; }
  cmake --build c
  pc=$(dirname "$(find "$PWD/prefix-with-files" -name zobgp-c.pc)")
  said=$(PKG_CONFIG_PATH=$pc pkg-config --static --cflags --libs zobgp-c)
  eval "said=($said)"
  "$c_compiler" "${flags[@]}" -std=c99 "$here/../capi/program.c" "${said[@]}" -o c-by-pkg-config
  exit
fi
if find prefix* -name '*.so*' -o -name bgpcomm | grep .; then exit 1; fi
"a build/parent"
static/program
./by-pkg-config
./by-hand
cd "$here/../.." # where the program in C finds files
"$2/c/program" samples/rib.bird.mrt.gz
"$2/c-by-pkg-config" samples/rib.bird.mrt.gz
