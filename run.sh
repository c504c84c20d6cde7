#!/usr/bin/env bash
# Builds morvex-cli, anonymises a copy of examples/case with it, and shows the result. All files that
# the script creates are in build/.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")"
root=$PWD
work=$root/build/example
charset=$(locale charmap)

# Runs a command and shows its output only if it fails.
quietly() {
  local log=$root/build/run.log
  if ! "$@" >"$log" 2>&1; then
    cat "$log" >&2
    echo "Failed: $*" >&2
    exit 1
  fi
}

# Prints a Windows-1252 file for this terminal.
shown() {
  iconv -f WINDOWS-1252 -t "$charset//TRANSLIT" "$1" | tr -d '\r'
}

# Prints a file of the case: "-" marks lines of the source, "+" the lines of the copy in their place.
show_change() {
  echo
  echo "$1"
  diff --old-line-format='  - %L' --new-line-format='  + %L' --unchanged-line-format='    %L' \
    <(shown "$work/case/$1") <(shown "$work/anonymised/$1") || true
}

# Prints a settings file. The first six lines have a fixed order; then each line has an extension
# behind a 1 (replace in files with it) or a 0 (only copy them).
settings() {
  printf '%s\r\n' "$work/case" "$work/anonymised" "$work/replacements.txt" \
    'log=1' 'sep=|' 'jok=*' '1.txt' '1.csv' '1.log' '0.xml'
}

./cmake/install_tools.sh g++ cmake ninja-build libcli11-dev nlohmann-json3-dev qt6-base-dev

echo 'Building ...'
mkdir -p build
quietly cmake --preset release -DMORVEX_TESTS=OFF -DMORVEX_DESKTOP=ON
quietly cmake --build --preset release

# The program keeps its settings and log in its own folder, so the example gets a copy of the program.
rm -rf "$work"
mkdir -p "$work/anonymised"
cp build/release/bin/morvex-cli "$work/"
cp -R examples/case examples/replacements.txt "$work/"
chmod -R u+w "$work"
settings >"$work/settings.dat"

echo
echo '== A copy of examples/case, with examples/replacements.txt: morvex-cli -if settings.dat'
(cd "$work" && ./morvex-cli -if settings.dat)

echo
echo '== Before (-) and after (+)'
show_change intake.txt
show_change contacts.csv
show_change hearing/notes.txt

echo
echo '== The run log, Morvex.log'
tr -d '\r' <"$work/Morvex.log"

echo
if ! diff -r examples/expected "$work/anonymised"; then
  echo 'The copies differ from examples/expected.' >&2
  exit 1
fi
if ! diff -r examples/case "$work/case"; then
  echo 'The source folder has changed.' >&2
  exit 1
fi

cat <<END
All copies are as expected, and the source is as it was. They lie in
  $work/anonymised

For files of your own:
  1. Make a folder and copy build/release/bin/morvex-cli into it; its log will lie there.
  2. Copy replacements.txt and settings.dat from build/example into it and change them; lines 1
     to 3 of settings.dat are the source, an existing target folder, and the replacement list.
  3. Run ./morvex-cli -if settings.dat there. docs/manual.md explains every line of both files.
END

if [[ -x build/release/bin/Morvex ]]; then
  echo
  echo 'The same program with windows: build/release/bin/Morvex'
fi
