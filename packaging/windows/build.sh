#!/usr/bin/env bash
# Builds both programs for Windows on Debian, with Debian's packages only, and packs them with the
# examples into build/Morvex-VERSION-windows-x64.zip. The first call also builds Qt (qt.sh), which
# takes about a quarter of an hour on two cores.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
files=$root/packaging/windows
build=$root/build/windows-package
triple=x86_64-w64-mingw32

# The libraries that are part of every Windows 10. The names api-ms-win-core-... stand for sets of
# system calls.
system_libraries='advapi32|api-ms-win-core-[a-z0-9-]+|authz|comctl32|comdlg32|d2d1|d3d11|d3d9|
dwmapi|dwrite|dxgi|gdi32|imm32|
kernel32|mpr|msvcrt|netapi32|ntdll|ole32|oleaut32|rpcrt4|secur32|setupapi|shcore|shell32|shlwapi|
user32|userenv|uxtheme|version|winmm|winspool\.drv|wtsapi32|ws2_32'

build_programs() {
  local qt
  qt=$("$files/qt.sh" | tail -n 1)
  # --fresh, since an earlier build may have found another Qt.
  cmake --fresh --preset windows -S "$root" -B "$build" -DMORVEX_TESTS=OFF -DMORVEX_DESKTOP=ON \
    -DCMAKE_TOOLCHAIN_FILE="$qt/lib/cmake/Qt6/qt.toolchain.cmake" \
    -DQT_CHAINLOAD_TOOLCHAIN_FILE="$root/cmake/mingw.cmake"
  cmake --build "$build" --target Morvex morvex-cli
}

# Lists the libraries that a program calls. Fails if one of them is not part of every Windows.
show_libraries() {
  local program=$1 names foreign
  names=$(LC_ALL=C "$triple-objdump" -p "$program" | sed -n 's/^\s*DLL Name: //p')
  if [[ -z $names ]]; then
    echo "$program: what it calls cannot be read" >&2
    return 1
  fi
  echo "$(basename "$program"): $(stat --format=%s "$program") bytes, calls" "${names//$'\n'/ }"
  foreign=$(grep --ignore-case --invert-match --line-regexp --extended-regexp \
    "(${system_libraries//$'\n'/})(\.dll)?" <<<"$names" || true)
  if [[ -n $foreign ]]; then
    echo "$program calls what is not part of Windows:" "${foreign//$'\n'/ }" >&2
    return 1
  fi
}

pack() {
  local name=$1 folder=$build/package/$1 program
  rm -rf "$build/package" "$root/build/$name.zip"
  mkdir -p "$folder"
  for program in Morvex morvex-cli; do
    "$triple-strip" --strip-all -o "$folder/$program.exe" "$build/bin/$program.exe"
    show_libraries "$folder/$program.exe"
  done
  sed "s/@PROJECT_VERSION@/$version/; s/\$/\r/" "$files/README.txt.in" >"$folder/README.txt"
  cp -R "$root/examples" "$folder/"
  if [[ -e $root/docs/MorvexHELP.chm ]]; then cp "$root/docs/MorvexHELP.chm" "$folder/"; fi
  (cd "$build/package" && cmake -E tar c "$root/build/$name.zip" --format=zip "$name")
}

"$root/cmake/install_tools.sh" cmake ninja-build g++-mingw-w64-x86-64-posix libcli11-dev \
  nlohmann-json3-dev
build_programs
version=$(sed -n 's/^CMAKE_PROJECT_VERSION:STATIC=//p' "$build/CMakeCache.txt")
pack "Morvex-$version-windows-x64"
echo "$(stat --format=%s "$root/build/Morvex-$version-windows-x64.zip") bytes:" \
  "$root/build/Morvex-$version-windows-x64.zip"
