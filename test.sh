#!/usr/bin/env bash
# Runs all checks that a change must pass: the build with sanitizers, the tests, the format,
# clang-tidy, the scripts. All of them run even if one fails. The last line counts the tests and
# these checks together.
set -uo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")" || exit 1
passed=0
failed=0
skipped=0

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

# Prints the project's files that match the patterns, each with a NUL behind it. In a checkout these
# are the files that git knows or would add.
project_files() {
  local pattern file named=()
  if [[ $(git rev-parse --show-toplevel 2>/dev/null) == "$(pwd -P)" ]]; then
    git ls-files -z --cached --others --exclude-standard -- "$@" |
      while IFS= read -r -d '' file; do
        [[ ! -f $file ]] || printf '%s\0' "$file"
      done
  else
    for pattern in "$@"; do
      named+=(-o -name "$pattern")
    done
    find . \( -path ./build -o -path ./.git \) -prune -o -type f \( "${named[@]:1}" \) -print0
  fi
}

build() {
  cmake --preset dev -DMORVEX_DESKTOP=ON && cmake --build --preset dev
}

# Runs the tests and adds their counts. A test that could not be started has failed; only a test that
# says so itself is skipped.
tests() {
  heading 'Tests'
  local log=build/tests.log line
  /usr/bin/python3 -B tests/run_tests.py build/dev | tee "$log"
  line=$(tail -n 1 "$log")
  if [[ $line =~ ^([0-9]+)\ passed,\ ([0-9]+)\ failed(,\ ([0-9]+)\ skipped)?$ ]]; then
    passed=$((passed + BASH_REMATCH[1]))
    failed=$((failed + BASH_REMATCH[2]))
    skipped=$((skipped + ${BASH_REMATCH[4]:-0}))
  else
    echo 'The tests were not counted.'
    failed=$((failed + 1))
  fi
}

format() {
  local files=()
  mapfile -d '' -t files < <(project_files '*.h' '*.cpp')
  echo "${#files[@]} files"
  ((${#files[@]})) && clang-format --dry-run -Werror "${files[@]}"
}

# clang-tidy checks headers together with the sources that include them.
tidy() {
  local database=build/dev/compile_commands.json log=build/clang-tidy.log here sources
  here=$(sed -n 's/^CMAKE_HOME_DIRECTORY:INTERNAL=//p' build/dev/CMakeCache.txt |
    sed 's/[][\.*^$+?(){}|]/\\&/g')
  sources="^$here/(core|host|ui|apps)/"
  echo "$(grep -cE "\"file\": \"${sources#^}" "$database") sources; this takes some minutes"
  grep -qE "\"file\": \"${sources#^}" "$database" || return 1
  if ! run-clang-tidy -p build/dev -quiet "$sources" >"$log" 2>&1; then
    sed 's/\x1b\[[0-9;]*m//g' "$log" | grep -vE '^clang-tidy|warnings? generated|^$'
    return 1
  fi
}

scripts() {
  local file good=0
  for file in run.sh test.sh .ci/run cmake/*.sh fuzz/*.sh bench/*.sh tests/*/*.sh \
    packaging/windows/*.sh packaging/linux/completions/*.bash; do
    bash -n "$file" || good=1
  done
  while IFS= read -r -d '' file; do
    /usr/bin/python3 -c 'import ast, sys; ast.parse(open(sys.argv[1], encoding="utf-8").read(), sys.argv[1])' "$file" || good=1
  done < <(project_files '*.py')
  return "$good"
}

mkdir -p build
# A tool that stays missing fails the check that needs it.
./cmake/install_tools.sh g++ cmake ninja-build libgtest-dev clang-format clang-tidy \
  libcli11-dev nlohmann-json3-dev parallel qt6-base-dev \
  desktop-file-utils xvfb openbox xdotool x11-utils imagemagick at-spi2-core dbus-daemon \
  python3-gi gir1.2-atspi-2.0
check 'Build' build
tests
check 'Format' format
check 'clang-tidy' tidy
check 'Scripts' scripts

echo
line="$passed passed, $failed failed"
((skipped == 0)) || line+=", $skipped skipped"
echo "$line"
((failed == 0))
