#!/usr/bin/env bash
#SBATCH --job-name=bgpcomm-merge
# merge.sh TASKS: joins the stores of all tasks. One that is missing is an error.
set -euo pipefail
stores=()
for ((i = 0; i < $1; ++i)); do stores+=("$i.store"); done
bgpcomm merge --total "${stores[@]}" --to all.store
bgpcomm restore all.store >summary.txt
