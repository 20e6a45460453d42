#!/usr/bin/env bash
# Holds every #include "..." against the layers: a file may include what stands in its own layer or
# before it. Run in the root of the source tree; names each include that reaches up. With --edges it
# prints every include instead: the file and what it includes.
set -euo pipefail

# Layers are of headers: a source file may use what stands beside it in its library, so sources rank
# as the last layer of theirs.
layer_of() {
  case $1 in
    platform/*) echo 1 ;;
    attr/*) echo 2 ;;
    community/*.cpp | ip6/*.cpp | parse/*.cpp | ip6/*List*.h | community-list/*) echo 5 ;;
    community/* | ip6/*) echo 3 ;;
    parse/*) echo 4 ;;
    path/*) echo 6 ;;
    kinds/*) echo 7 ;;
    query/*) echo 8 ;;
    mrt/*) echo 9 ;;
    tools/* | examples/* | capi/*) echo 10 ;;
    *) echo 0 ;;
  esac
}

faults=0
fault() { echo "$1" >&2 && faults=$((faults + 1)); }

declare -A layer edges
while read -r file; do
  layer[$file]=$(layer_of "$file")
  if ((layer[$file] == 0)); then fault "$file: stands in no layer"; fi
done < <(find * \( -path build -o -path tests -o -path bench \) -prune -o \
  \( -name '*.h' -o -name '*.cpp' \) -print | sort)

# One line per include: file:line:included. It is found as the compiler does: beside the file, then
# in platform/, then in the root.
includes=0
while IFS=: read -r file line included; do
  includes=$((includes + 1))
  for folder in "${file%/*}/" platform/ ""; do
    if [[ -n ${layer[$folder$included]:-} ]]; then break; fi
  done
  included=$folder$included
  if [[ -z ${layer[$included]:-} ]]; then
    fault "$file:$line: no \"$included\" beside it, in platform/ or in the root"
  elif ((layer[$file] < layer[$included])); then
    fault "$file:$line: layer ${layer[$file]} includes \"$included\" of layer ${layer[$included]}"
  elif [[ $included == */internal/* && $file == *.h && $file != */internal/* ]]; then
    fault "$file:$line: is installed, \"$included\" is not"
  fi
  edges[$file]+=" $included"
done < <(printf '%s\0' "${!layer[@]}" | sort -z |
  xargs -0 awk '/^[ \t]*#[ \t]*include[ \t]*"/ { split($0, part, "\""); print FILENAME ":" FNR ":" part[2] }')

if [[ ${1:-} == --edges ]]; then
  for file in "${!edges[@]}"; do printf "$file %s\n" ${edges[$file]}; done
  exit $((faults > 0))
fi

# Marks every header behind one as seen.
look_behind() {
  local next
  for next in ${edges[$1]:-}; do
    if [[ -n ${seen[$next]:-} ]]; then continue; fi
    seen[$next]=1
    look_behind "$next"
  done
}

# The cost of a header to its users: the most own headers that a chief header may bring. A
# header that needs another one raises its number here, or better does without.
while read -r most chief; do
  if [[ -z ${layer[$chief]:-} ]]; then fault "$chief: no such header"; fi
  declare -A seen=()
  look_behind "$chief"
  if ((${#seen[@]} > most)); then fault "$chief: brings ${#seen[@]} own headers, not $most"; fi
done <<'CHIEFS'
14 attr/ZoBgpSerialize.h
64 community-list/ZoBgpCommunityList.h
49 community-list/ZoBgpCommunityListExtended.h
35 community-list/ZoBgpCommunityListLarge.h
34 community-list/ZoBgpCommunityListStandard.h
46 community/ZoBgpCommunity.h
35 ip6/ExtCommIp6.h
53 ip6/ExtCommIp6List.h
64 parse/BgpParseExtComm.h
92 path/ZoBgpCommunityTables.h
CHIEFS

if ((includes == 0)); then fault "no include found in $PWD: not the root of the source tree?"; fi
echo "layers: ${#layer[@]} files, $includes includes, $faults faults"
((faults == 0))
