#!/usr/bin/env bash
# Installs the missing ones of the Debian packages named as arguments. If none is missing, the script
# downloads nothing and needs no rights.
set -euo pipefail

installed() {
  [[ $(dpkg-query --show --showformat='${db:Status-Status}' "$1" 2>/dev/null) == installed ]]
}

if ! command -v dpkg-query >/dev/null; then
  echo "This is no Debian-like system: please see to it that it has what these packages hold: $*" >&2
  exit 0
fi

missing=()
for package in "$@"; do
  installed "$package" || missing+=("$package")
done
((${#missing[@]})) || exit 0

as_root=()
if ((EUID != 0)); then
  if ! command -v sudo >/dev/null; then
    echo "These packages are missing, and installing them takes root or sudo: ${missing[*]}" >&2
    exit 1
  fi
  as_root=(sudo)
fi

log=$(mktemp)
trap 'rm -f "$log"' EXIT

apt() {
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get "$@" >>"$log" 2>&1
}

echo "Installing ${missing[*]} ..."
if ! { apt update && apt install -y --no-install-recommends "${missing[@]}"; }; then
  cat "$log" >&2
  echo "These packages could not be installed: ${missing[*]}" >&2
  exit 1
fi
