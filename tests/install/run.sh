#!/usr/bin/env bash
# run.sh BUILD_FOLDER COMPILER [FLAG...]: installs into a folder of its own, moves that elsewhere,
# and builds and runs the examples and two small programs against it.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
build=$1 compiler=$2
shift 2

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
cmake --install "$build" --prefix "$scratch/staged" >/dev/null
mv "$scratch/staged" "$scratch/prefix"

# Each installed header finds what it includes among the installed ones.
headers=$scratch/prefix/include/ZoBgpCommunity
missing=0
while IFS=: read -r file included; do
  if [[ ! -e ${file%/*}/$included && ! -e $headers/$included ]]; then
    echo "${file#"$headers"/}: \"$included\" is not installed" >&2
    missing=1
  fi
done < <(grep -rHoP '^\s*#\s*include\s*"\K[^"]+' "$headers")
if find "$headers" -path '*/internal/*' | grep .; then missing=1; fi
((missing == 0))

# The headers that programs name: each stays where it is, whatever moves behind it.
printf '#include "%s.h"\n' >"$scratch/every-header.cpp" \
  attr/{BgpPathAttributeEnums,ZoBgp{AttributeReader,Globals,MiscTypes,Serialize}} \
  community{/BgpHashMixImpl,/ZoBgpCommunity,-list/ZoBgpCommunityList{,Impl}} \
  ip6/ExtCommIp6{,ClassificationList,DedupTable,List,ListDedupTable} \
  parse/BgpParseExtComm{,Color,DefaultGateway,LinkBandwidth,OriginValidationState} \
  parse/BgpParseExtComm{RouteOrigin,RouteTarget,TunnelEncap} path/ZoBgpCommunityTables \
  kinds/ZoBgp{Kind{,Check,Fields,Pack,Table,Text},CommunityReader}

"$here/run-paths.sh" "$scratch/prefix"
cmake -S "$here" -B "$scratch/build" -G Ninja -DCMAKE_CXX_COMPILER="$compiler" \
  -DCMAKE_CXX_FLAGS="$*" -DCMAKE_PREFIX_PATH="$scratch/prefix" \
  -DEVERY_HEADER="$scratch/every-header.cpp"
cmake --build "$scratch/build"
ctest --test-dir "$scratch/build" --output-on-failure --no-tests=error
# By pkg-config, and by the next standard.
pc=$(dirname "$(find "$scratch/prefix" -name ZoBgpKinds.pc)")
flags=$(PKG_CONFIG_PATH=$pc pkg-config --cflags --libs ZoBgpKinds)
"$compiler" "$@" "$here/main.cpp" $flags -std=c++2b -o "$scratch/by-pkg-config"
LD_LIBRARY_PATH=$(dirname "$pc") "$scratch/by-pkg-config"
if [[ -x $scratch/prefix/bin/bgpcomm ]]; then "$scratch/prefix/bin/bgpcomm" --help; fi
