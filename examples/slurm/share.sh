#!/usr/bin/env bash
#SBATCH --job-name=bgpcomm-share
# share.sh TASKS: one task of the array. Reads every TASKS-th file, beginning with its own number, so
# that neighbours, which are alike, fall to different tasks; saves the sums of their figures.
set -euo pipefail
mapfile -t files <files
share=()
for ((i = SLURM_ARRAY_TASK_ID; i < ${#files[@]}; i += $1)); do share+=("${files[i]}"); done
bgpcomm save --total "${share[@]}" --to "$SLURM_ARRAY_TASK_ID.store"
