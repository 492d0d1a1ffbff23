#!/usr/bin/env bash
# Installs what the project builds on, or says what lacks.
#
#   scripts/setup.sh [PACKAGE...]           installs what is missing; needs root or sudo for packages
#   scripts/setup.sh --check [PACKAGE...]   changes nothing; names what is missing, and how to get it
#
# PACKAGE... are Debian packages that one chore needs beyond those of every build. What is there
# already is left alone, and no installed package is ever removed.
set -euo pipefail
cd "$(dirname "$0")/.."

mode=install
if [ "${1:-}" = --check ]; then
  mode=check
  shift
fi

packages=(g++ cmake ninja-build python3 python3-jsonschema
  libicu-dev libreadstat-dev libcli11-dev nlohmann-json3-dev libfmt-dev zlib1g-dev libzstd-dev
  unixodbc-dev libgtest-dev libgmock-dev "$@")

missing=()
for package in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'ok installed' ||
    missing+=("$package")
done

# Only headers are needed, and the packages of different Boost versions exclude each other: any
# version whose headers the compiler finds will do.
boost_header='#include <boost/math/special_functions/beta.hpp>'
if ! { command -v c++ && c++ -std=c++20 -E -x c++ - <<<"$boost_header"; } >/dev/null 2>&1; then
  missing+=(libboost-dev)
fi

# The data engine is there, in the version that the lock file names.
engine_installed() {
  local installed=third_party/node_modules
  [ -f $installed/@duckdb/node-bindings-linux-x64/libduckdb.so ] &&
    [ -f $installed/duckdb/src/duckdb/src/include/duckdb.h ] &&
    python3 - third_party/package-lock.json $installed/.package-lock.json <<'END'
import json, sys

def checksums(path):
    packages = json.load(open(path))["packages"]
    return [packages["node_modules/" + name]["integrity"]
            for name in ("@duckdb/node-bindings-linux-x64", "duckdb")]

sys.exit(checksums(sys.argv[1]) != checksums(sys.argv[2]))
END
}
engine_missing=no
if ! engine_installed 2>/dev/null; then
  engine_missing=yes
  # A Node.js that did not come from Debian serves as well.
  command -v npm >/dev/null || missing+=(nodejs npm ca-certificates)
fi

if [ "$mode" = check ]; then
  [ ${#missing[@]} -eq 0 ] || echo "missing packages: ${missing[*]}" >&2
  [ "$engine_missing" = no ] ||
    echo "missing or outdated: the data engine of third_party/package-lock.json" >&2
  if [ ${#missing[@]} -gt 0 ] || [ "$engine_missing" = yes ]; then
    arguments="$*"
    echo "install with: make setup${arguments:+ PACKAGES=\"$arguments\"}" >&2
    exit 1
  fi
  exit 0
fi

if [ ${#missing[@]} -gt 0 ]; then
  as_root=()
  if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || {
      echo "missing packages: ${missing[*]}; install them as root, or install sudo" >&2
      exit 1
    }
    as_root=(sudo)
  fi
  "${as_root[@]}" apt-get update -qq
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
    apt-get install -y -qq --no-install-recommends --no-remove "${missing[@]}"
fi
if ! engine_installed 2>/dev/null; then
  # npm empties the folder before it fills it.
  if [ -L third_party/node_modules ]; then
    echo "third_party/node_modules is a link to another tree's: set up there, or remove the link" >&2
    exit 1
  fi
  (cd third_party && npm ci --ignore-scripts --no-audit --no-fund --loglevel=error)
fi
