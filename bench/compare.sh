#!/usr/bin/env bash
# Times whole programs side by side: morvex-cli, and those that a user might take instead. Every
# program gets the same source and replacement list, with the files in the page cache. In each round
# all programs run once; the table shows their medians and the ratio to morvex-cli's median.
#
#   bench/compare.sh [ROUNDS [FOLDER]]     5 rounds, in a new folder under /tmp
#
# A program whose copies differ from morvex-cli's is listed as "differs" and not compared.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."
rounds=${1:-5}
work=${2:-$(mktemp -d /tmp/morvex-compare.XXXXXX)}
./cmake/install_tools.sh g++ cmake ninja-build libcli11-dev nlohmann-json3-dev perl sed python3
# Not every Debian release has these packages; a missing program is left out of the table.
for package in sd rpl; do
  ./cmake/install_tools.sh "$package" >/dev/null 2>&1 || true
done
cmake --preset release -DMORVEX_TESTS=OFF >/dev/null
cmake --build --preset release --target morvex-cli >/dev/null
exec python3 bench/compare.py "$PWD/build/release/bin/morvex-cli" "$work" "$rounds"
