#!/usr/bin/env bash
# Installs what the project builds on: Debian's packages, those named as arguments too, and DuckDB from npm, pinned by
# third_party/package-lock.json. Does nothing where everything is there already. Needs root or sudo for the packages.
set -euo pipefail
cd "$(dirname "$0")/.."

packages=(g++ cmake ninja-build ccache nodejs npm python3
  libicu-dev libcli11-dev nlohmann-json3-dev libfmt-dev libboost1.81-dev zlib1g-dev libzstd-dev
  libgtest-dev libgmock-dev libbenchmark-dev "$@")

missing=()
for package in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || missing+=("$package")
done
# A Node.js that did not come from Debian serves as well.
if command -v node >/dev/null && command -v npm >/dev/null; then
  for i in "${!missing[@]}"; do
    case "${missing[$i]}" in nodejs | npm) unset "missing[$i]" ;; esac
  done
fi
if [ ${#missing[@]} -gt 0 ]; then
  as_root=""
  [ "$(id -u)" -eq 0 ] || as_root="sudo"
  $as_root apt-get update -qq
  $as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi

engine=third_party/node_modules/@duckdb/node-bindings-linux-x64/libduckdb.so
header=third_party/node_modules/duckdb/src/duckdb/src/include/duckdb.h
if [ ! -f "$engine" ] || [ ! -f "$header" ] ||
  [ third_party/package-lock.json -nt third_party/node_modules/.package-lock.json ]; then
  (cd third_party && npm ci --ignore-scripts --no-audit --no-fund --loglevel=error)
fi
