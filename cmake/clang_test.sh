#!/usr/bin/env bash
# Builds the core, the console program and their tests with Clang, with warnings as errors, and runs
# the tests. The last line counts the tests, and the build as one more.
set -uo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit 1
mkdir -p build
./cmake/install_tools.sh clang g++ cmake ninja-build libgtest-dev libcli11-dev nlohmann-json3-dev \
  parallel python3

if ! { cmake --preset clang && cmake --build --preset clang; }; then
  echo
  echo '0 passed, 1 failed'
  exit 1
fi
log=build/clang-tests.log
/usr/bin/python3 -B tests/run_tests.py build/clang | tee "$log"
line=$(tail -n 1 "$log")
echo
if [[ ! $line =~ ^([0-9]+)\ passed,\ ([0-9]+)\ failed(.*)$ ]]; then
  echo '1 passed, 1 failed'
  exit 1
fi
echo "$((BASH_REMATCH[1] + 1)) passed, ${BASH_REMATCH[2]} failed${BASH_REMATCH[3]}"
((BASH_REMATCH[2] == 0))
