#!/usr/bin/env bash
# Makes morvex.ico in this folder from the program's drawing. Call it when the drawing changes.
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
root=$(cd "$here/../.." && pwd)
"$root/cmake/install_tools.sh" librsvg2-bin imagemagick

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
pictures=()
for size in 16 20 24 32 40 48 64 256; do
  rsvg-convert --width "$size" --height "$size" --output "$work/$size.png" \
    "$root/ui/qt/pictures/morvex.svg"
  pictures+=("$work/$size.png")
done
convert "${pictures[@]}" "$here/morvex.ico"
