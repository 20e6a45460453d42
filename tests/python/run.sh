#!/usr/bin/env bash
# run.sh LIBRARY: installs the Python package into an environment of its own, without a network, and
# uses it. LIBRARY is libzobgp-c.
set -euo pipefail
library=$(realpath "$1")
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
if ! python3 -m venv "$scratch/venv" >"$scratch/log" 2>&1; then
  tail -2 "$scratch/log"
  echo "python3-venv is not installed" && exit 77
fi
if command -v mypy >/dev/null; then mypy --strict --ignore-missing-imports --cache-dir=/dev/null python/zobgp; fi
cp -r python "$scratch/package"
PIP_NO_INDEX=1 PIP_DISABLE_PIP_VERSION_CHECK=1 "$scratch/venv/bin/pip" install -q "$scratch/package"
# The source archive is whole: a package can be made of it.
(cd "$scratch/package" && python3 -c 'import backend; backend.build_sdist("..")')
PIP_NO_INDEX=1 PIP_DISABLE_PIP_VERSION_CHECK=1 "$scratch/venv/bin/pip" install -q --force-reinstall "$scratch"/zobgp-*.tar.gz
for file in /nonexistent libc.so.6; do # none, and another
  (ZOBGP_LIBRARY=$file "$scratch/venv/bin/python" -c 'import zobgp' 2>&1 || true) | grep -q '^ImportError: libzobgp-c cannot'
done
ZOBGP_LIBRARY=$library exec "$scratch/venv/bin/python" tests/python/test.py
