#!/usr/bin/env bash
# Times check, filter, grep and cat over one large text: see commands.py.
#
#   bench/commands.sh [ROUNDS [MIB [FOLDER]]]     5 rounds, 1024 MiB, in a new folder under /tmp
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."
work=${3:-$(mktemp -d /tmp/morvex-commands.XXXXXX)}
./cmake/install_tools.sh g++ cmake ninja-build libcli11-dev nlohmann-json3-dev grep python3
cmake --preset release -DMORVEX_TESTS=OFF >/dev/null
cmake --build --preset release --target morvex-cli >/dev/null
exec python3 bench/commands.py "$PWD/build/release/bin/morvex-cli" "$work" "${1:-5}" "${2:-1024}"
