#!/usr/bin/env bash
# manual.sh TOOL: what --help says of a command, the manual page says too, and shells complete it.
set -euo pipefail
bgpcomm() { "$tool" "$@"; }
tool=$1 faults=0 options=0
fault() { echo "$1" >&2 && faults=$((faults + 1)); }

man=$(bgpcomm manual man | sed 's/\\-/-/g') zsh=$(bgpcomm manual zsh)
source <(bgpcomm manual bash)

# complete_words WORD...: what bash offers for the last word.
complete_words() {
  COMP_WORDS=(bgpcomm "$@") COMP_CWORD=$#
  _bgpcomm bgpcomm "${COMP_WORDS[COMP_CWORD]}" "${COMP_WORDS[COMP_CWORD - 1]}"
}

for command in $(bgpcomm help | sed -n '/^Subcommands/,/^$/s/^  \([a-z-]*\) .*/\1/p'); do
  diff <(bgpcomm help "$command") <(bgpcomm "$command" --help) >&2 || fault "help $command"
  its_man=$(sed -n "/^\.SS $command$/,/^\.S[SH]/p" <<<"$man")
  its_zsh=$(sed -n "/^  $command) /,/;;$/p" <<<"$zsh")
  for option in $(bgpcomm help "$command" | sed -nE 's/^  (-.,)?(--[a-z-]+)(,(--[a-z-]+))?.*/\2 \4/p'); do
    options=$((options + 1))
    grep -qE "^.fB([^ ]+, )?$option(,|.fR)" <<<"$its_man" || fault "man: $command $option"
    grep -qE "'\*$option(=?\[)" <<<"$its_zsh" || fault "zsh: $command $option"
    complete_words "$command" "$option"
    [[ " ${COMPREPLY[*]} " == *" $option "* ]] || fault "bash: $command $option"
  done
done
((options > 150)) || fault "only $options options"

while IFS=: read -r words offered; do
  eval "complete_words $words"
  [[ ${COMPREPLY[*]} == "$offered" ]] || fault "$words: ${COMPREPLY[*]}"
done <<'EOF'
su:summary
paths --te:--text
paths --text '':canonical policy show
paths --text = s:show
--kinds file top --by p:peer prefix
paths --color n:never
lint --rules as-t:as-trans
summary --kinds '':
summary --by:
summary '':
summary --json '':
kinds --he:--help
help --json w:watch-rt
manual '':man bash zsh
EOF

if command -v groff >/dev/null; then
  [[ -z $(bgpcomm manual man | groff -man -ww -z 2>&1) ]] || fault "man: groff complains"
fi
if command -v zsh >/dev/null; then bgpcomm manual zsh | zsh -n || fault "zsh: no program"; fi
echo "manual: $options options, $faults faults"
((faults == 0))
