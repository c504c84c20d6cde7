#!/usr/bin/env bash
# Builds the console program and the tests for Windows and runs them under Wine. All of it is done
# even when a part fails. The last line counts the tests and the two builds together.
set -uo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/../.." || exit 1
windows=$PWD/build/windows
passed=0
failed=0
skipped=0

# A prefix of its own, without what Wine would like to install for other programs.
export WINEPREFIX=$windows/wine
export WINEDEBUG=-all
export WINEDLLOVERRIDES='mscoree,mshtml='
wine=$(command -v wine64 || command -v wine || echo /usr/lib/wine/wine64)
wineserver=$(command -v wineserver || echo /usr/lib/wine/wineserver64)

heading() {
  echo
  echo "== $1"
}

# Runs a function as one check.
check() {
  heading "$1"
  if "$2"; then
    echo "$1: passed"
    passed=$((passed + 1))
  else
    echo "$1: FAILED"
    failed=$((failed + 1))
  fi
}

build_for_windows() {
  cmake --preset windows -DMORVEX_DESKTOP=OFF &&
    cmake --build --preset windows --target morvex-cli morvex-tests morvex-host-tests \
      morvex-reference-tests
}

# What judges the program's runs is a program of this machine.
build_the_judge() {
  cmake --preset dev && cmake --build --preset dev --target morvex-windows-run-tests
}

# Dates and times as the judge expects them.
set_up_wine() {
  local user='HKCU\Control Panel\International'
  "$wine" wineboot --init &&
    "$wine" reg add "$user" /v sShortDate /d MM/dd/yy /f &&
    "$wine" reg add "$user" /v sTimeFormat /d HH:mm:ss /f
}

# tests NAME REPORT COMMAND...: runs one test program whole and counts what its report holds. A
# program that ends without one, or in another way than its report says, counts as one failure.
tests() {
  local name=$1 report=$2 status=0 run=0 bad=0 excused=0 line
  shift 2
  heading "$name"
  rm -f "$report"
  timeout 900 "$@" --gtest_brief=1 || status=$?
  if [[ -f $report ]]; then
    line=$(grep -m 1 '<testsuites ' "$report")
    run=$(sed -n 's/.* tests="\([0-9]*\)".*/\1/p' <<<"$line")
    bad=$(sed -n 's/.* failures="\([0-9]*\)".*/\1/p' <<<"$line")
    excused=$(grep -c '<testcase .* result="skipped"' "$report")
    run=$((run - $(grep -c '<testcase .* status="notrun"' "$report")))
  fi
  if ((run == 0 || (status != 0 && bad == 0))); then
    echo "$name ended with status $status."
    bad=$((bad + 1))
    run=$((run + 1))
  fi
  echo "$name: $((run - bad - excused)) passed, $bad failed, $excused skipped"
  passed=$((passed + run - bad - excused))
  failed=$((failed + bad))
  skipped=$((skipped + excused))
}

# The same for a program that Wine runs; it sees this machine's disk as drive Z.
windows_tests() {
  local report=$windows/$1.xml
  tests "$1" "$report" "$wine" "$windows/bin/$1.exe" "--gtest_output=xml:Z:$report"
}

./cmake/install_tools.sh g++ g++-mingw-w64-x86-64-posix cmake ninja-build googletest libgtest-dev \
  libcli11-dev nlohmann-json3-dev wine64
mkdir -p "$windows"
check 'Build for Windows' build_for_windows
check 'Build of the judge' build_the_judge
check 'Wine' set_up_wine
windows_tests morvex-host-tests
windows_tests morvex-tests
# The engine is judged at length on this machine; a share of the random cases will do here.
MORVEX_JUDGE_CASES=2000 windows_tests morvex-reference-tests
report=$windows/morvex-windows-run-tests.xml
MORVEX_CLI=$windows/bin/morvex-cli.exe MORVEX_UNDER=$wine \
  tests morvex-windows-run-tests "$report" build/dev/bin/morvex-windows-run-tests \
  "--gtest_output=xml:$report"
"$wineserver" --kill

echo
echo "$passed passed, $failed failed, $skipped skipped"
((failed == 0))
