#!/usr/bin/env bash
# Builds Qt's widgets as static libraries for Windows. The sources are those of this machine's Qt
# packages, since the build runs the tools of these packages, which must have the same version. The
# last line on standard output is the folder of the built Qt; all else goes to standard error.
#
# The build takes about a quarter of an hour on two cores, so the result is kept outside the
# repository: one folder per version, recipe and compiler. A folder without the file `complete` is
# built anew.
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
root=$(cd "$here/../.." && pwd)
toolchain=$root/cmake/mingw.cmake

"$root/cmake/install_tools.sh" cmake ninja-build dpkg-dev qt6-base-dev qt6-base-dev-tools \
  g++-mingw-w64-x86-64-posix >&2

# Fetches a source package. The lists of source packages go into the current folder, so that this
# machine's own lists stay unchanged.
fetch_source() {
  local package=$1 version=$2 file
  mkdir -p apt/parts apt/lists/partial apt/cache/archives/partial
  for file in /etc/apt/sources.list /etc/apt/sources.list.d/*.list; do
    [[ -f $file ]] || continue
    sed -n 's/^deb /deb-src /p' "$file" >"apt/parts/$(basename "$file" .list).list"
  done
  for file in /etc/apt/sources.list.d/*.sources; do
    [[ -f $file ]] || continue
    sed 's/^Types:.*/Types: deb-src/' "$file" >"apt/parts/$(basename "$file")"
  done
  local apart=(-o Dir::Etc::sourcelist=/dev/null -o Dir::Etc::sourceparts="$PWD/apt/parts"
    -o Dir::State::lists="$PWD/apt/lists" -o Dir::Cache="$PWD/apt/cache" -o APT::Sandbox::User=)
  apt-get "${apart[@]}" update
  apt-get "${apart[@]}" source --only-source "$package=$version"
}

# The parts of Qt that neither the program's three windows nor their tests need. Without the system_
# features Qt uses its own copies of these libraries, so programs call only Windows' own libraries.
without=(sql network dbus printsupport vulkan concurrent xml tabletevent
  graphicsview jpeg gif pdf textodfwriter textmarkdownreader textmarkdownwriter
  undocommand mdiarea lcdnumber dial fontcombobox splashscreen
  system_zlib system_png system_jpeg system_freetype system_harfbuzz system_pcre2
  system_doubleconversion)

build_qt() {
  local source=$1 installed=$2 features=("${without[@]/#/-DFEATURE_}")
  features=("${features[@]/%/=OFF}")
  cmake -G Ninja -S "$source" -B build \
    -DCMAKE_TOOLCHAIN_FILE="$toolchain" -DCMAKE_INSTALL_PREFIX="$installed" \
    -DQT_HOST_PATH=/usr -DQT_HOST_PATH_CMAKE_DIR="/usr/lib/$(dpkg-architecture -qDEB_HOST_MULTIARCH)/cmake" \
    -DBUILD_SHARED_LIBS=OFF -DCMAKE_BUILD_TYPE=MinSizeRel \
    -DQT_BUILD_EXAMPLES=OFF -DQT_BUILD_TESTS=OFF -DINPUT_opengl=no \
    "${features[@]}"
  cmake --build build
  cmake --install build --strip
}

version=$(dpkg-query --show --showformat='${source:Version}' qt6-base-dev)
compiler=$(x86_64-w64-mingw32-g++-posix -dumpfullversion)
recipe=$(cat "${BASH_SOURCE[0]}" "$toolchain" - <<<"$compiler" | sed '/^ *#/d' | sha256sum | cut -c1-12)
home=${XDG_CACHE_HOME:-$HOME/.cache}/morvex/qt-windows/$version-$recipe

if [[ ! -e $home/complete ]]; then
  rm -rf "$home"
  mkdir -p "$home/work"
  {
    cd "$home/work"
    echo "Building Qt $version for Windows in $home ..."
    fetch_source qt6-base "$version"
    build_qt "$(echo "$PWD"/qt6-base-*/)" "$home/qt"
    cd "$home"
    rm -rf work
    touch complete
  } >&2
fi
echo "$home/qt"
