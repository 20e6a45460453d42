#!/usr/bin/env bash
# run-paths.sh FOLDER...: no binary in the folders looks for its libraries where its user happens to
# be. An empty element of a run path is the current folder; so is every one that begins with neither
# $ORIGIN nor a slash.
set -euo pipefail

binaries=0 faults=0
while IFS= read -r -d '' file; do
  dynamic=$(readelf --dynamic "$file" 2>/dev/null) || continue
  binaries=$((binaries + 1))
  path=$(sed -nE 's/.*\(R(UN)?PATH\).*\[(.*)\]$/\2/p' <<<"$dynamic")
  if [[ -z $path ]]; then continue; fi
  if tr : '\n' <<<"$path" | grep -qvE '^(\$ORIGIN|/)'; then
    echo "$file: looks for libraries in the current folder: [$path]" >&2
    faults=$((faults + 1))
  fi
done < <(find "$@" -type f \( -name '*.so*' -o -perm -u+x \) -not -path '*/CMakeFiles/*' -print0)

if ((binaries == 0)); then echo "no binary in $*" >&2 && faults=1; fi
echo "run paths: $binaries binaries, $faults faults"
((faults == 0))
