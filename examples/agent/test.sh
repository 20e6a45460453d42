#!/usr/bin/env bash
# test.sh AGENT: runs the agent on the sample, whose figures another program counted, and on a few
# messages that announce and withdraw. Run in the root of the source tree.
set -euo pipefail
agent=$1

# expect FILE THREADS LINE...: the agent ends well and prints these lines, extended regular
# expressions, in this order among others.
expect() {
  local output line rest
  output=$("$agent" "$1" "$2")
  rest=$output
  for line in "${@:3}"; do
    if ! rest=$(sed -nE "\\|^$line\$|,\$p" <<<"$rest" | grep .); then
      printf '%s\n%s: no line "%s" where it should be\n' "$output" "$1" "$line" >&2
      exit 1
    fi
  done
}

for threads in 1 4; do
  expect samples/rib.bird.mrt.gz $threads 'paths +9,723' 'extended lists +1,585 +9,721 .*' \
    '  sets of route targets +171 .*' '  values +1,057 .*' 'IPv6 extended lists +9 +570 .*' \
    '  values +12 .*' 'large lists +674 +2,944 .*' 'all withdrawn: nothing is left'
done

length() { printf "%0$1x" $((${#2} / 2)); }
# record SUBTYPE BODY: an MRT record of the peer 192.0.2.1, all in hex.
record() {
  local body=0000fc580000fc5900010001c0000201c0000202$2
  printf "$(sed 's/../\\x&/g' <<<"000000000010$1$(length 8 "$body")$body")"
}
# update WITHDRAWN ATTRIBUTES PREFIXES: one of an UPDATE.
update() {
  local body
  body=$(length 4 "$1")$1$(length 4 "$2")$2$3
  record 0004 "$(printf %032d 0 | tr 0 f)$(printf %04x $((${#body} / 2 + 19)))02$body"
}
# 65000:100 with and without no-export, a route target, and a community of three octets. The bits
# behind a prefix differ between announcement and withdrawal. One thread: the two paths of a set may be
# in two shards, and the set then comes and goes as these happen to run.
updates() {
  update '' c00808fde80064ffffff01 180a0101
  update '' c00804fde80064 180a0102
  update '' c010080002fde800000064 170a0203180a0104
  update 170a0202 '' ''
  update '' c00803fde800 180a0104
}
updates | expect - 1 'paths +2' '  announced +5' '  withdrawn +1' '  malformed, so withdrawn +1' \
  '    first: Community attribute, offset 0: 3 octets, expected a value of 4' \
  'standard lists +1 +2 .*' 'extended lists +0 +0 .*' 'route targets in use +0' \
  '  sets of them that came +1' '  sets of them that went +1' 'all withdrawn: nothing is left'
# The session goes down, or comes up anew.
for states in 00060001 00050006; do
  { updates; record 0005 $states; } | expect - 1 'paths +0' '  withdrawn +3'
done
