# Sourced by the commands beside it: brings the machine and a build folder to where they can work.
# Leaves the shell in the root of the source tree.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

# JOBS counts for every build and every run of tests that a command starts.
if [[ -n ${JOBS:-} ]]; then export CMAKE_BUILD_PARALLEL_LEVEL=$JOBS CTEST_PARALLEL_LEVEL=$JOBS; fi

# The packages of Debian for each purpose.
packages_for() {
  case $1 in
    tool) echo cmake ninja-build g++ libcli11-dev nlohmann-json3-dev zlib1g-dev libbz2-dev liblzma-dev libzstd-dev ;;
    tests) echo googletest pkg-config bzip2 xz-utils zstd python3 xxd bsdextrautils ;;
    more-tests) echo zsh groff-base python3-venv python3-jsonschema mypy chromium-driver python3-selenium ;;
    python) echo python3 ;;
    bench) echo libbenchmark-dev libboost-dev ;;
    plot) echo gnuplot-nox ;;
    docs) echo doxygen graphviz python3 ;;
    packages) echo dpkg-dev file ;;
    bare) echo mmdebstrap lintian ;;
    clang) echo clang-14 libclang-rt-14-dev llvm-14 ;;
    format) echo clang-format-14 ;;
    tidy) echo clang-tidy-14 ;;
    m32) echo g++-multilib ;;
    servers) echo munge slurm-wlm clickhouse-server clickhouse-client ;;
  esac
}

# The sign that a package is there: a command, a header, a Python module, a file, or a compiler that can
# link with these options.
sign_of() {
  local compiler=${CXX:-c++}
  case $1 in
    ninja-build) echo ninja ;;
    g++) echo "${compiler%% *}" ;;
    g++-multilib) echo links "$compiler" -m32 ;;
    libcli11-dev) echo CLI/CLI.hpp ;;
    nlohmann-json3-dev) echo nlohmann/json.hpp ;;
    zlib1g-dev) echo zlib.h ;;
    libbz2-dev) echo bzlib.h ;;
    liblzma-dev) echo lzma.h ;;
    libzstd-dev) echo zstd.h ;;
    googletest) echo "${ZOBGP_GOOGLETEST:-/usr/src/googletest}/googletest/src/gtest-all.cc" ;;
    xz-utils) echo xz ;;
    bsdextrautils) echo hexdump ;;
    groff-base) echo groff ;;
    python3-venv) echo module ensurepip ;;
    python3-jsonschema) echo module jsonschema ;;
    python3-selenium) echo module selenium ;;
    chromium-driver) echo chromedriver ;;
    libbenchmark-dev) echo benchmark/benchmark.h ;;
    libboost-dev) echo boost/flyweight.hpp ;;
    gnuplot-nox) echo gnuplot ;;
    graphviz) echo dot ;;
    dpkg-dev) echo dpkg-shlibdeps ;;
    clang-14) echo clang++-14 ;;
    libclang-rt-14-dev) echo links clang++-14 -fsanitize=address ;;
    llvm-14) echo llvm-symbolizer-14 ;;
    munge) echo munged ;;
    slurm-wlm) echo slurmctld ;;
    *) echo "$1" ;; # the command of the same name
  esac
}

# there PACKAGE: whether what it holds is here, installed by apt or not.
there() {
  local sign prefix prefixes
  if [[ $(dpkg-query -W -f '${db:Status-Status}' "$1" 2>/dev/null) == installed ]]; then return; fi
  sign=$(sign_of "$1")
  case $sign in
    /*) [[ -e $sign ]] ;;
    module\ *) python3 -c "import ${sign#* }" 2>/dev/null ;;
    links\ *) ${sign#* } -x c++ -o /dev/null - <<<'int main() {}' 2>/dev/null ;;
    *.h | *.hpp)
      IFS=: read -ra prefixes <<<"${CMAKE_PREFIX_PATH:-}:/usr/local:/usr"
      for prefix in "${prefixes[@]}"; do
        if [[ -e $prefix/include/$sign ]]; then return; fi
      done
      return 1
      ;;
    *) command -v "$sign" >/dev/null ;;
  esac
}

# known PACKAGE: whether apt has it; where it has no lists yet, all are.
lists() { compgen -G '/var/lib/apt/lists/*_Packages*' >/dev/null; }
known() { apt-cache show "$1" >/dev/null 2>&1 || ! lists; }

# skip_unknown PACKAGE...: ends the command with 77 where one is neither here nor known.
skip_unknown() {
  local package
  for package; do
    if there "$package" || known "$package"; then continue; fi
    echo "skipped: needs $package, which this system has no package of" >&2
    exit 77
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
  apt-get install -qq -y --no-install-recommends -o Dpkg::Use-Pty=0 "$@"'

# becomes_root PACKAGE...: whether this user is root, or becomes root by sudo, whose question for a password
# says what it is for.
becomes_root() {
  if ((EUID == 0)); then return; fi
  command -v sudo >/dev/null && sudo -v -p "To install with apt: $*"$'\n''[sudo] password for %p: ' 2>/dev/null
}

# install PACKAGE...: as root or by sudo; where that does not go, one line says why.
install() {
  local as_root=() package ours=() said
  if ((EUID != 0)); then as_root=(sudo); fi
  if becomes_root "$@"; then
    echo "Installing with apt: $*"
    said=$("${as_root[@]}" apt-get update -qq 2>&1) || true
    for package; do
      if known "$package"; then ours+=("$package"); fi
    done
    if ((${#ours[@]} == 0)) ||
      said+=$'\n'$("${as_root[@]}" sh -c "$install_packages" install "${ours[@]}" 2>&1); then return; fi
    said=$(grep -m 1 -E '^E:|Failed to fetch' <<<"$said" || tail -n 1 <<<"$said")
    echo "Not installed. Is there a network? apt-get: $said" >&2
    return
  fi
  for package; do
    if known "$package"; then ours+=("$package"); fi
  done
  if ((${#ours[@]})); then
    echo "Needs root once: $(lists || echo "apt-get update && ")apt-get install --no-install-recommends ${ours[*]}" \
      "(or your own, in PATH or below CMAKE_PREFIX_PATH)" >&2
  fi
}

# need PURPOSE... [-- PURPOSE...]: installs what these purposes lack, and says so first; silent when they
# lack nothing. Ends the command where something is still lacking: with 77 if this system's packages do
# not have it, or if it was asked for before in vain; else with 1. The lacks of purposes after `--` end
# nothing.
need() {
  local purpose package missing=() must=() lacking=() must_have=1
  for purpose; do
    if [[ $purpose == -- ]]; then must_have= && continue; fi
    for package in $(packages_for "$purpose"); do
      if there "$package"; then continue; fi
      if [[ " ${ZOBGP_LACKS:-} " != *" $package "* ]]; then missing+=("$package"); fi
      if [[ -n $must_have ]]; then must+=("$package"); fi
    done
  done
  if ((${#missing[@]} == 0)); then
    :
  elif command -v apt-get >/dev/null; then
    skip_unknown "${must[@]}"
    install "${missing[@]}"
  else
    echo "Not found; by their names in Debian: ${missing[*]}" >&2
  fi
  skip_unknown "${must[@]}"
  for package in "${must[@]}"; do
    if there "$package"; then continue; fi
    if [[ " ${missing[*]} " == *" $package "* ]]; then exit 1; fi # said above
    echo "skipped: needs $package" >&2
    exit 77
  done
  for package in "${missing[@]}"; do
    if ! there "$package"; then lacking+=("$package"); fi
  done
  if ((${#lacking[@]})); then echo "Goes on without: ${lacking[*]}" >&2; fi
  export ZOBGP_LACKS="${ZOBGP_LACKS:-} ${lacking[*]}" # commands that it starts do not ask again
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

# build PRESET [TARGET...]: configures, then builds these targets, or all of them. Targets alone do not
# bring tests, which need more, into a folder that has none.
build() {
  local preset=$1 options=()
  shift
  if (($#)) && ! { [[ -e build/$preset/build.ninja ]] &&
    grep -qixE 'ZOBGP_TESTS:BOOL=(ON|TRUE)' "build/$preset/CMakeCache.txt"; }; then
    options=(-DZOBGP_TESTS=OFF)
  fi
  quietly cmake --preset "$preset" "${options[@]}"
  cmake --build --preset "$preset" ${@:+--target "$@"}
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
