#!/usr/bin/env bash
# submit.sh FOLDER TASKS <LIST: the figures of the files in a list, by the nodes of a Slurm cluster.
#
#   find archive -name 'rib.*.bz2' | ./submit.sh ribs 100
#   bgpcomm restore --json --top 100 ribs/all.store      # when the jobs are through
#
# Submits a job array, each of whose tasks reads its share of the files, and one job that joins what
# they have found once all have ended well. FOLDER is made and gets the stores of the tasks (0.store,
# 1.store, ...), their logs, all.store and summary.txt. All nodes see it and the files, and have
# `bgpcomm` in $PATH. Prints the ids of both jobs.
#
# A task that cannot read a file to its end fails: its log says why, its store has what could be read,
# and the last job is cancelled. Repeat the task, which writes its store anew, then the last job; both
# get the number of tasks, which is that of the files if these are fewer:
#
#   sbatch --chdir=ribs --array=17 --output=%a.log share.sh 100
#   sbatch --chdir=ribs merge.sh 100
set -euo pipefail
folder=$1 tasks=$2
here=$(realpath "$(dirname "$0")")

mkdir "$folder" # one that is there belongs to another run
xargs -d '\n' realpath -e >"$folder/files"
cd "$folder"
files=$(wc -l <files)
if ((files < tasks)); then tasks=$files; fi
shares=$(sbatch --parsable --array=0-$((tasks - 1)) --output=%a.log "$here/share.sh" "$tasks")
last=$(sbatch --parsable --dependency=afterok:"$shares" --kill-on-invalid-dep=yes \
  --output=merge.log "$here/merge.sh" "$tasks")
echo "$shares $last"
