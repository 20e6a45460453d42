#!/usr/bin/env bash
# symbols.sh [--update] LIBRARY...: holds the strong symbols that each library exports against the list in
# tests/symbols/. A symbol that goes, or changes, ends programs built before: it takes a new soname. Weak
# ones (templates, inline functions) come and go with the compiler.
set -euo pipefail
update=
[[ $1 != --update ]] || { update=1 && shift; }
differ=0
for library; do
  name=$(basename "$library")
  list=tests/symbols/${name%%.so*}.txt
  symbols=$(nm --dynamic --demangle --defined-only "$library" | sed -nE 's/^[0-9a-f]+ [TDBR] //p' | LC_ALL=C sort -u)
  [[ -z $update ]] || echo "$symbols" >"$list"
  diff -u "$list" --label "$list" --label "$library" - <<<"$symbols" || differ=1
done
[[ $differ == 0 ]] || echo "Meant to be so? $0 --update ${*@Q}"
exit $differ
