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
ZOBGP_LIBRARY=$library exec "$scratch/venv/bin/python" tests/python/test.py
