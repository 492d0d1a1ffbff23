#!/usr/bin/env bash
# Installs the SQL servers that `make test-sources` tries the program on, and the drivers for them.
# The tests start servers of their own: those that the packages start by themselves are stopped again,
# unless they were there before.
set -euo pipefail
cd "$(dirname "$0")/.."

is_installed() {
  dpkg-query -W -f='${Status}' "$1" 2>/dev/null | grep -q 'ok installed'
}

as_root() {
  if [ "$(id -u)" -eq 0 ]; then "$@"; else sudo "$@"; fi
}

new=()
is_installed postgresql || new+=(postgresql)
is_installed mariadb-server || new+=(mariadb)
scripts/setup.sh libsqliteodbc odbc-postgresql odbc-mariadb postgresql mariadb-server \
  mariadb-plugin-spider
for service in "${new[@]}"; do
  if [ -d /run/systemd/system ]; then
    as_root systemctl disable --now "$service"
  else
    as_root service "$service" stop >/dev/null
  fi
done
