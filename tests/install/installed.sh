#!/usr/bin/env bash
# installed.sh build FOLDER COMPILER FLAGS C_COMPILER BUILD_FOLDER: installs into a folder of its own, moves that
# elsewhere, and builds the examples and two small programs against it.
# installed.sh run FOLDER: looks at what is installed, and runs them.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
folder=$2
prefix="$folder/a prefix" # a path with a blank
if [[ $1 == build ]]; then
  compiler=$3 c_compiler=$5 build=$6
  read -ra flags <<<"$4"
  mkdir -p "$folder"
  rm -rf "$folder/staged" "$prefix"
  cmake --install "$build" --prefix "$folder/staged" >/dev/null
  mv "$folder/staged" "$prefix"

  # The headers that programs name: each stays where it is, whatever moves behind it.
  printf '#include "%s.h"\n' >"$folder/every-header.cpp" \
    attr/{BgpPathAttributeEnums,ZoBgp{AttributeReader,Globals,MiscTypes,Serialize}} \
    community{/BgpHashMixImpl,/ZoBgpCommunity,-list/ZoBgpCommunityList{,Impl}} \
    ip6/ExtCommIp6{,ClassificationList,DedupTable,List,ListDedupTable} \
    parse/BgpParseExtComm{,Color,DefaultGateway,LinkBandwidth,OriginValidationState} \
    parse/BgpParseExtComm{RouteOrigin,RouteTarget,TunnelEncap} path/ZoBgpCommunityTables \
    kinds/ZoBgp{Kind{,Check,Fields,Pack,Table,Text},CommunityReader}

  cmake -S "$here" -B "$folder/build" -G Ninja -DCMAKE_CXX_COMPILER="$compiler" \
    -DCMAKE_CXX_FLAGS="$4" -DCMAKE_PREFIX_PATH="$prefix" \
    -DEVERY_HEADER="$folder/every-header.cpp" >"$folder/log" || { cat "$folder/log" && exit 1; }
  cmake --build "$folder/build"
  # By pkg-config, and by the next standard.
  pc=$(dirname "$(find "$prefix" -name ZoBgpKinds.pc)")
  said=$(PKG_CONFIG_PATH=$pc pkg-config --cflags --libs ZoBgpKinds)
  eval "said=($said)"
  "$compiler" "${flags[@]}" -std=c++2b "$here/main.cpp" "${said[@]}" -o "$folder/by-pkg-config"
  said=$(PKG_CONFIG_PATH=$pc pkg-config --cflags --libs zobgp-c)
  eval "said=($said)"
  "$c_compiler" "${flags[@]}" -std=c99 -Werror "$here/../capi/program.c" "${said[@]}" -o "$folder/c-by-pkg-config"
  exit
fi

# Each installed header finds what it includes among the installed ones.
headers=$prefix/include/ZoBgpCommunity
missing=0
while IFS=: read -r file included; do
  if [[ ! -e ${file%/*}/$included && ! -e $headers/$included ]]; then
    echo "${file#"$headers"/}: \"$included\" is not installed" >&2
    missing=1
  fi
done < <(grep -rHoP '^\s*#\s*include\s*"\K[^"]+' "$headers")
if find "$headers" -path '*/internal/*' | grep .; then missing=1; fi
((missing == 0))

# Links of pages lead to what is installed.
while IFS=: read -r page target; do
  if [[ ! -e ${page%/*}/$target ]]; then
    echo "${page##*/}: a link leads to $target, which is not installed" >&2
    missing=1
  fi
done < <(grep -rHoP --include='*.md' '\]\(\K[^):# ]+(?=[)#])' "$prefix/share/doc")
((missing == 0))

"$here/run-paths.sh" "$prefix"
ctest --test-dir "$folder/build" --output-on-failure --no-tests=error
libraries=$(dirname "$(find "$prefix" -name libZoBgpKinds.so)")
LD_LIBRARY_PATH=$libraries "$folder/by-pkg-config"
LD_LIBRARY_PATH=$libraries "$folder/c-by-pkg-config" samples/rib.bird.mrt.gz
if [[ -x $prefix/bin/bgpcomm ]]; then "$prefix/bin/bgpcomm" --help; fi
