#!/usr/bin/env bash
# Runs the tool's commands on small files with each allocation failing in turn, alone and with all
# that come after it. Usage: run.sh TOOL LIBRARY [STRIDE [COMMAND...]]; LIBRARY is FailingMemory.
#
# A run must either do without the memory and print what it always prints, or say "out of memory"
# and exit with 1. From the first run on whose message names the file, all must name it.
# STRIDE n fails only every n-th allocation, from a start that differs for each command. The
# allocations that declare all arguments fail in the first command only.
set -euo pipefail
tool=$(realpath "$1") library=$(realpath "$2") stride=${3:-1}
folder=$(mktemp -d)
trap 'rm -r "$folder"' EXIT
cd "$folder"

hex() { tr -d ' \n' | sed 's/../\\x&/g' | xargs -0 printf; }
# One UPDATE of a BGP4MP_ET record, with a community of every list type and a withdrawn prefix.
hex > one.mrt <<<'
  6553f100 0011 0004 00000095  00000001 0000fc58 0000fc59 0001 0001 c0000201 c0000202
  ffffffffffffffffffffffffffffffff 007d 02  0004 180a0103  005e
  40010100 c00808 fde80064 ffffff01 c01010 030b000000000007 0002fde800000064
  c01914 0002 20010db8000000000000000000000001 0064 c0200c 0000fde80000000100000002
  800f13 0001 80 78 000010 0000fde800000064 0a010200
  180a0102'
gzip -kn one.mrt; bzip2 -k one.mrt; xz -k one.mrt; zstd -q one.mrt
"$tool" save one.mrt --to one.store
cp one.store two.store
printf '40 01 01 00\n0002fde800000064\n' > lines

commands=("summary one.mrt.gz" "summary --json one.mrt.bz2" "paths one.mrt.xz" "verify one.mrt"
  "paths --json --rt 65000:100 --ext 030b000000000007 one.mrt.zst" "watch-rt one.mrt"
  "watch-rt --json one.mrt.zst" "save one.mrt --to new.store" "restore one.store" "decode -"
  "restore --json one.store" "decode --json 0002fde800000064 c00804fde80064" "describe CommList"
  "paths --where 65000:100 --group-by value one.mrt" "values one.mrt" "diff one.mrt.xz one.mrt"
  "top --by list one.mrt" "faults one.mrt.gz" "spread 10.1.2.0/24 one.mrt"
  "report one.mrt -o new.store" "lint --longer-than 0 one.mrt" "restore --total one.store two.store"
  "merge one.store two.store --to new.store" "merge --total one.store two.store --to new.store")
if (($# > 3)); then commands=("${@:4}"); fi

# Runs a command; its output is in `out`, its messages in `err`.
run() { LD_PRELOAD=$library "${@:2}" "$tool" $1 <lines >out 2>err; }

run --version env SHOW_COUNT=1
declaring=$(($(tail -1 err) - 50))  # the same allocations in every command

failures=0 runs=0 number=0
for command in "${commands[@]}"; do
  rm -f new.store
  run "$command" env SHOW_COUNT=1
  sed '/seconds\|[^n]shared/d' out >good
  total=$(tail -1 err)
  file=$(grep -o '[a-z]*\.\(mrt\|store\)[.a-z0-9]*' <<<"$command" | tail -1 || true)
  for on in "" FAIL_ON=1; do
    named=
    for ((at = (number > 1 ? declaring : 1) + number % stride; at <= total; at += stride, ++runs)); do
      rm -f new.store*
      code=0
      run "$command" env FAIL_AT=$at $on || code=$?
      fault=
      if [ $code = 0 ]; then
        [ -z "$on" ] || [ $((total - at)) -lt 10 ] || fault="exit code 0"
        [ ! -s err ] || fault="a message"
        sed '/seconds\|[^n]shared/d' out | cmp -s - good || fault="other output"
      elif [ $code = 1 ]; then
        grep -q "^bgpcomm: \($file\|one.mrt\|total\|[a-z]*.store\): out of memory" err && named=$file ||
          fault=${named:+"no file named"}
        grep -q '^bgpcomm: .*out of memory' err || fault="another message"
        grep -qv '^bgpcomm: .*out of memory' err && fault="another message too"
      else
        fault="exit code $code"
      fi
      [ -z "$(ls | grep 'new.store.')" ] || fault="a file beside the store"
      if [ -n "$fault" ]; then
        failures=$((failures + 1))
        echo "bgpcomm $command, allocation $at of $total${on:+ and all after}: $fault: $(head -1 err)"
      fi
    done
    number=$((number + 1))
  done
done
echo "$runs runs, $failures failures"
[ $failures = 0 ]
