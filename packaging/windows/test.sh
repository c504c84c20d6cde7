#!/usr/bin/env bash
# Builds the console program and the tests for Windows and runs the tests under Wine. All steps are
# done even if one fails. The last line counts the tests, the two builds and the set-up of Wine.
set -uo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/../.." || exit 1
windows=$PWD/build/windows
passed=0
failed=0
skipped=0
# At most 8 parts, so that none is without tests.
parts=$(nproc)
((parts <= 8)) || parts=8

# The tests get their own Wine prefix, without the additions that Wine offers to install.
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

# The judge, which checks the program's runs, is a program for this machine.
build_the_judge() {
  cmake --preset dev && cmake --build --preset dev --target morvex-windows-run-tests
}

# Sets the formats of dates and times that the judge expects.
set_up_wine() {
  local user='HKCU\Control Panel\International'
  "$wine" wineboot --init &&
    "$wine" reg add "$user" /v sShortDate /d MM/dd/yy /f &&
    "$wine" reg add "$user" /v sTimeFormat /d HH:mm:ss /f
}

# count_report NAME REPORT STATUS: adds the counts from the report of a test program that ended with
# the status. A program without a report, or that failed although its report shows no failure, counts
# as one failure.
count_report() {
  local name=$1 report=$2 status=$3 run=0 bad=0 excused=0 line
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

# tests NAME PARTS DRIVE COMMAND...: runs a test program in PARTS parts at the same time. DRIVE is the
# drive on which the program finds this machine's disk.
tests() {
  local name=$1 parts=$2 drive=$3 report=$windows/$1.xml part status processes=()
  shift 3
  heading "$name"
  for ((part = 0; part < parts; ++part)); do
    rm -f "$report.$part"
    GTEST_TOTAL_SHARDS=$parts GTEST_SHARD_INDEX=$part timeout 900 "$@" --gtest_brief=1 \
      "--gtest_output=xml:$drive$report.$part" <&0 >"$report.$part.log" 2>&1 &
    processes+=($!)
  done
  for part in "${!processes[@]}"; do
    status=0
    wait "${processes[part]}" || status=$?
    cat "$report.$part.log"
    count_report "$name, part $((part + 1)) of $parts" "$report.$part" "$status"
  done
}

# windows_tests NAME PARTS: calls tests for a program that Wine runs.
windows_tests() {
  tests "$1" "$2" Z: "$wine" "$windows/bin/$1.exe"
}

./cmake/install_tools.sh g++ g++-mingw-w64-x86-64-posix cmake ninja-build googletest libgtest-dev \
  libcli11-dev nlohmann-json3-dev wine64
mkdir -p "$windows"
check 'Build for Windows' build_for_windows
check 'Build of the judge' build_the_judge
check 'Wine' set_up_wine
# These tests start their own program again for a single case, which other parts would leave out.
windows_tests morvex-host-tests 1
windows_tests morvex-tests "$parts"
# test.sh runs all random cases of the engine on this machine, so a part of them is enough here.
MORVEX_JUDGE_CASES=2000 windows_tests morvex-reference-tests "$parts"
MORVEX_CLI=$windows/bin/morvex-cli.exe MORVEX_UNDER=$wine \
  tests morvex-windows-run-tests "$parts" '' build/dev/bin/morvex-windows-run-tests
"$wineserver" --kill

echo
echo "$passed passed, $failed failed, $skipped skipped"
((failed == 0))
