#!/usr/bin/env bash
# Tests the package that build.sh has made: unpacks it and runs it in an empty Wine prefix, on a
# screen of its own. The pictures of the windows go into build/windows-package/pictures.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/../.."
packages=(build/Morvex-*-windows-x64.zip)
if [[ ! -e ${packages[0]} || ${#packages[@]} != 1 ]]; then
  echo 'There must be one package: packaging/windows/build.sh makes it.' >&2
  exit 1
fi

./cmake/install_tools.sh g++ cmake ninja-build libcli11-dev nlohmann-json3-dev googletest wine64 \
  fonts-wine fonts-dejavu-core xvfb openbox xdotool x11-utils imagemagick dbus-daemon python3
console=build/windows-package/console
cmake --preset release -B "$console" -DMORVEX_TESTS=OFF -DMORVEX_DESKTOP=OFF
cmake --build "$console" --target morvex-cli
cmake -DMORVEX_TESTS=ON build/windows-package
cmake --build build/windows-package --target morvex-desktop-tests

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
(cd "$work" && cmake -E tar x "$OLDPWD/${packages[0]}")
/usr/bin/python3 -B tests/desktop/windows_test.py "$work"/Morvex-* "$console/bin/morvex-cli" \
  build/windows-package/bin/morvex-desktop-tests.exe build/windows-package/pictures
