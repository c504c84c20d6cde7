#!/usr/bin/env bash
# Installs the built programs into a new folder and looks there for the files that a desktop needs.
#
#   install_test.sh BUILD_FOLDER
set -euo pipefail

build=$1
root=$(mktemp -d)
export XDG_RUNTIME_DIR=$root QT_QPA_PLATFORM=offscreen
trap 'rm -rf "$root"' EXIT

fail() {
  echo "$1" >&2
  exit 1
}

cmake --install "$build" --prefix "$root" >"$root/install.log" || { cat "$root/install.log" >&2; exit 1; }

entry=$root/share/applications/morvex.desktop
desktop-file-validate "$entry" || fail 'The desktop entry is not valid.'
program=$(sed -n 's/^Exec=//p' "$entry")
[[ -x $root/bin/$program ]] || fail "The desktop entry starts $program, which is not there."
icon=$(sed -n 's/^Icon=//p' "$entry")
grep -q '<svg' "$root/share/icons/hicolor/scalable/apps/$icon.svg" ||
  fail "The desktop entry shows $icon, which is not there."

# The programs must write settings and log beside themselves, not beside the links to them.
mkdir "$root/source" "$root/target"
printf 'Jansen' >"$root/source/a.txt"
printf 'Jansen|Person A||\r\n' >"$root/list.txt"
printf '%s\r\n' "$root/source" "$root/target" "$root/list.txt" log=1 'sep=|' 'jok=*' 1.txt >"$root/settings.dat"
for name in morvex-cli "$program"; do
  rm -f "$root/target/a.txt" "$root/lib/morvex/Morvex.log" "$root/lib/morvex/Init.dat"
  "$root/bin/$name" -if "$root/settings.dat" >"$root/output" ||
    fail "$name ended with status $?: $(cat "$root/output")"
  [[ $(cat "$root/target/a.txt") == 'Person A' ]] || fail "$name left a wrong copy."
  [[ -s $root/lib/morvex/Morvex.log && -s $root/lib/morvex/Init.dat ]] || fail "$name left no log or no settings."
done
[[ $(ls "$root/bin") == "$(printf '%s\n' "$program" morvex-cli | sort)" ]] || fail "Beside the links stands more: $(ls "$root/bin")"
