# Sourced by the commands beside it: brings the machine and a build folder to where they can work.
# Leaves the shell in the root of the source tree.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

# The packages of Debian 12 for each purpose.
packages_for() {
  case $1 in
    build) echo cmake ninja-build g++ libcli11-dev nlohmann-json3-dev zlib1g-dev libbz2-dev liblzma-dev libzstd-dev googletest ;;
    test) echo pkg-config bzip2 xz-utils zstd zsh groff-base python3 python3-venv python3-jsonschema ;;
    python) echo python3 ;;
    bench) echo libbenchmark-dev libboost-dev ;;
    plot) echo gnuplot-nox ;;
    docs) echo doxygen graphviz ;;
    packages) echo dpkg-dev file ;;
    bare) echo mmdebstrap lintian ;;
    checks) echo clang-14 libclang-rt-14-dev llvm-14 clang-format-14 clang-tidy-14 g++-multilib ;;
    servers) echo munge slurm-wlm clickhouse-server clickhouse-client ;;
  esac
}

missing_packages() {
  local package
  for package in "$@"; do
    [[ $(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null) == installed ]] ||
      echo "$package"
  done
}

# Run by root's shell: installs packages. Services among them are not started; where the machine
# has a rule of its own for this already, that one counts.
install_packages='
  rule=/usr/sbin/policy-rc.d
  if [ ! -e $rule ]; then
    trap "rm -f $rule" EXIT
    trap "exit 1" HUP INT TERM
    printf "#!/bin/sh\nexit 101\n" >$rule
    chmod +x $rule
  fi
  export DEBIAN_FRONTEND=noninteractive DEBCONF_NOWARNINGS=yes
  apt-get install -qq -y --no-install-recommends -o Dpkg::Use-Pty=0 "$@" >/dev/null'

# need PURPOSE...: installs what these purposes lack, and says so first. Silent when nothing does. Who
# cannot install goes on with what is there, installed by apt or not.
need() {
  local wanted missing as_root=() purpose
  if ! command -v apt-get >/dev/null; then return; fi # not Debian: cmake will say what it lacks
  wanted=$(for purpose in "$@"; do packages_for "$purpose"; done)
  mapfile -t missing < <(missing_packages $wanted)
  if ((${#missing[@]} == 0)); then return; fi
  if ((EUID != 0)); then
    if ! command -v sudo >/dev/null; then
      echo "Needs root once: apt-get install ${missing[*]}; or your own. Goes on without." >&2
      return
    fi
    as_root=(sudo)
  fi
  echo "Installing with apt: ${missing[*]}"
  if ! "${as_root[@]}" apt-get update -qq ||
    ! "${as_root[@]}" sh -c "$install_packages" install "${missing[@]}"; then
    echo "Not installed: ${missing[*]}. Is there a network? Goes on without." >&2
  fi
}

# quietly COMMAND...: its output is shown only when it fails.
quietly() {
  local log status=0
  log=$(mktemp)
  "$@" >"$log" 2>&1 || status=$?
  if ((status != 0)); then cat "$log" >&2; fi
  rm -f "$log"
  return $status
}

# build PRESET [TARGET...]: configures, then builds these targets, or all of them.
build() {
  local preset=$1
  shift
  quietly cmake --preset "$preset"
  cmake --build --preset "$preset" ${JOBS:+-j "$JOBS"} ${@:+--target "$@"}
}

# run_tests PRESET [CTEST ARGUMENT...]
run_tests() {
  local preset=$1 random_bits prefix=()
  shift
  if [[ $preset == tsan ]]; then
    # ThreadSanitizer of GCC 12 and Clang 14 cannot map its shadow where newer kernels put code.
    random_bits=$(cat /proc/sys/vm/mmap_rnd_bits 2>/dev/null || echo 32)
    if ((random_bits > 28)); then prefix=(setarch -R); fi
  fi
  "${prefix[@]}" ctest --preset "$preset" -j "${JOBS:-$(nproc)}" "$@"
}
