#!/usr/bin/env bash
# test.sh TOOL: runs the example on a cluster of one node, which is started in a temporary folder, on
# loopback, and stopped whatever happens. The joined figures must be those of one run over all files;
# a file that ends too early must fail its task and keep the last job from running.
# Run as root in the root of the source tree; exit code 77 where that, Slurm or munge is missing.
set -euo pipefail

skip() { echo "skipped: $*"; exit 77; }
((EUID == 0)) || skip "slurmd runs jobs as root only"
for program in munged slurmctld slurmd sbatch setpriv; do
  command -v $program >/dev/null || skip "no $program (packages munge and slurm-wlm)"
done

folder=$(mktemp -d /tmp/slurm-XXXXXX)
export SLURM_CONF=$folder/slurm.conf

# Processes of this cluster, by the variable that all of them inherit.
processes() {
  grep -lzx "SLURM_CONF=$SLURM_CONF" /proc/[0-9]*/environ 2>/dev/null | cut -d/ -f3 | grep -vx $$
}
stop() {
  local status=$? process
  trap - EXIT
  if ((status != 0)); then tail -n 20 "$folder"/*.log "$folder"/*/*.log >&2 || true; fi
  # Again, for those that start while others end.
  for ((i = 0; i < 10; ++i)); do
    for process in $(processes); do kill -KILL "$process" || true; done 2>/dev/null
  done
  wait
  rm -rf "$folder"
  exit $status
}
trap stop EXIT
trap 'exit 1' HUP INT TERM

# until_good COMMAND...: repeats it until it succeeds, for at most a minute.
until_good() {
  local end=$((SECONDS + 60))
  until "$@" >/dev/null 2>&1; do
    if ((SECONDS > end)); then echo "waited in vain: $*" >&2; exit 1; fi
    sleep 0.2
  done
}
# daemon COMMAND...: in the background; it ends with this process even if that is killed.
daemon() {
  setpriv --pdeathsig KILL "$@" >"$folder/$1.log" 2>&1 &
  disown
}
free_port() {
  local port
  while port=$((RANDOM % 20000 + 10000)); do
    if ! (: <"/dev/tcp/127.0.0.1/$port") 2>/dev/null; then echo $port; return; fi
  done
}

chmod 755 "$folder"
mkdir "$folder"/{state,spool,munge,bin}
dd if=/dev/urandom of="$folder/munge/key" bs=128 count=1 status=none
chmod 400 "$folder/munge/key"
ln -s "$(realpath "$1")" "$folder/bin/bgpcomm"
PATH=$folder/bin:$PATH
cat >"$SLURM_CONF" <<END
ClusterName=example
SlurmctldHost=$(hostname -s)(127.0.0.1)
SlurmctldPort=$(free_port)
SlurmUser=root
SlurmdUser=root
AuthInfo=socket=$folder/munge/socket
CommunicationParameters=NoCtldInAddrAny,NoInAddrAny
StateSaveLocation=$folder/state
SlurmdSpoolDir=$folder/spool
SlurmctldPidFile=$folder/slurmctld.pid
SlurmdPidFile=$folder/slurmd.pid
ProctrackType=proctrack/linuxproc
TaskPlugin=task/none
SelectType=select/cons_tres
SelectTypeParameters=CR_Core
SchedulerParameters=sched_interval=1,batch_sched_delay=0
MpiDefault=none
ReturnToService=2
NodeName=$(hostname -s) NodeAddr=127.0.0.1 Port=$(free_port) CPUs=2
PartitionName=all Nodes=ALL Default=YES State=UP
END
daemon munged --foreground --force --socket="$folder/munge/socket" --key-file="$folder/munge/key" \
  --pid-file="$folder/munge/pid" --seed-file="$folder/munge/seed" --log-file="$folder/munge/log"
until_good test -S "$folder/munge/socket"
daemon slurmctld -D
daemon slurmd -D
is_idle() { sinfo --noheader | grep -q idle; }
until_good is_idle

# Three files with values and lists in common, a fourth that ends inside of a record.
hex() { tr -d ' \n' | sed 's/../\\x&/g' | xargs -0 printf; }
cp samples/rib.bird.mrt.gz "$folder/a.gz"
for values in fde80064ffffff01 fde80064fde80065; do
  hex >"$folder/$values" <<<"
    6553f100 0010 0004 0000003e  0000fc58 0000fc59 0001 0001 c0000201 c0000202
    ffffffffffffffffffffffffffffffff 002a 02 0000 000f 40010100 c00808 $values 180a0102"
done
head -c 3000 "$folder/a.gz" >"$folder/cut"
cd "$folder"

# The total of a summary, without times, and without the memory that varies with a table's seed.
figures() { sed '/seconds\|[^n]shared\|saved/d' "$@"; }
all_through() { [[ -z $(squeue --noheader) ]]; }
# submit FOLDER TASKS FILE...
submit() {
  printf '%s\n' "${@:3}" | "$OLDPWD/examples/slurm/submit.sh" "$1" "$2" >/dev/null
  until_good all_through
}
expect_same() {
  bgpcomm summary --total a.gz fde8* | figures | diff - <(figures "$1/summary.txt")
  diff <(bgpcomm summary --json --total a.gz fde8* | figures) <(bgpcomm restore --json --total "$1/all.store" | figures)
}

for tasks in 2 5; do
  submit "of-$tasks" $tasks fde8* a.gz
  expect_same "of-$tasks"
done

submit repeated 3 fde8* cut
[[ ! -e repeated/all.store ]] || { echo "joined although a task failed" >&2; exit 1; }
grep -q 'cut: gzip data end too early' repeated/2.log
cp a.gz cut.gz && mv cut.gz cut
sbatch --chdir=repeated --array=2 --output=%a.log "$OLDPWD/examples/slurm/share.sh" 3 >/dev/null
until_good all_through
sbatch --chdir=repeated --output=merge.log "$OLDPWD/examples/slurm/merge.sh" 3 >/dev/null
until_good all_through
expect_same repeated
