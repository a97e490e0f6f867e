#!/usr/bin/env bash
# Puts the libraries that Carvello uses into build/windows-deps, for the cross build. All clones of a user share them: they
# stand in the user's cache, in CARVELLO_WINDOWS_DEPS if that names a folder, and build/windows-deps leads there. Debian
# has no mingw-w64 packages of them: Qt, pugixml, zlib and libpng are built from Debian's own source packages, GoogleTest
# from the sources that Debian installs, and CLI11 and nlohmann-json are headers only. All are static. A library that was
# built before, from the same version and in the same way, is left as it is; Qt takes a quarter of an hour on two
# processors.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
. packaging/debian/source_packages.sh

prefix=${CARVELLO_WINDOWS_DEPS:-${XDG_CACHE_HOME:-${HOME:-$PWD/build}/.cache}/carvello/windows-deps}
if [ -d build/windows-deps ] && [ ! -L build/windows-deps ]; then
  prefix=$PWD/build/windows-deps # made before they were shared
else
  mkdir -p build "$prefix"
  ln -sfn "$prefix" build/windows-deps
fi
exec 9> "$prefix/lock" # the next one waits, and then finds them
flock 9
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# provide NAME PACKAGE…: calls provide_NAME unless its stamp tells that it has been done. The stamp holds how it is done
# and the versions of the packages that it is made of.
provide() {
  local name=$1 stamp=$prefix/stamps/$1 wanted
  shift
  wanted=$(dpkg-query -W "$@" g++-mingw-w64-x86-64-posix && declare -f "provide_$name" download_source build_library &&
    cat cmake/mingw-w64-x86_64.cmake)
  [ "$(cat "$stamp" 2>/dev/null)" != "$wanted" ] || return 0
  echo "Building $name for Windows" >&2
  mkdir -p "$prefix/stamps" "$prefix/include" "$prefix/share/cmake"
  rm -f "$stamp" "$work"/*.dsc
  "provide_$name"
  # Of what sources: those that could be had, which need not be those of the packages that are installed.
  find "$work" -maxdepth 1 -name '*.dsc' -exec sed -n '/^Version: /{s///p;q}' {} \; > "$prefix/stamps/$name.sources"
  echo "$wanted" > "$stamp"
}

# build_library NAME SOURCE [CMAKE-OPTION…]
build_library() {
  local name=$1 source=$2
  shift 2
  logged "$name could not be configured for Windows" cmake -G Ninja -S "$source" -B "$work/build-$name" \
    -DCMAKE_BUILD_TYPE=Release -DBUILD_SHARED_LIBS=OFF -DCMAKE_INSTALL_PREFIX="$prefix" \
    -DCMAKE_TOOLCHAIN_FILE="$PWD/cmake/mingw-w64-x86_64.cmake" "$@"
  logged "$name could not be built for Windows" cmake --build "$work/build-$name" --target install
  rm -rf "$work/build-$name"
}

provide_headers() {
  cp -r /usr/include/CLI /usr/include/nlohmann "$prefix/include/"
  cp -r /usr/share/cmake/CLI11 /usr/share/cmake/nlohmann_json "$prefix/share/cmake/"
}

provide_googletest() {
  build_library googletest /usr/src/googletest
}

provide_pugixml() {
  download_source pugixml
  build_library pugixml "$work/pugixml"
}

# The static library alone: Debian's sources leave out what the other one is made with on Windows.
provide_zlib() {
  download_source zlib
  logged "zlib could not be configured for Windows" cmake -G Ninja -S "$work/zlib" -B "$work/build-zlib" \
    -DCMAKE_BUILD_TYPE=Release -DCMAKE_TOOLCHAIN_FILE="$PWD/cmake/mingw-w64-x86_64.cmake"
  logged "zlib could not be built for Windows" cmake --build "$work/build-zlib" --target zlibstatic
  mkdir -p "$prefix/lib"
  cp "$work/build-zlib/libzlibstatic.a" "$prefix/lib/libz.a"
  cp "$work/zlib/zlib.h" "$work/build-zlib/zconf.h" "$prefix/include/"
  rm -rf "$work/zlib" "$work/build-zlib"
}

provide_png() {
  download_source libpng1.6
  build_library libpng "$work/libpng1.6" -DPNG_SHARED=OFF -DPNG_STATIC=ON -DPNG_TESTS=OFF -DPNG_EXECUTABLES=OFF \
    -DZLIB_INCLUDE_DIR="$prefix/include" -DZLIB_LIBRARY="$prefix/lib/libz.a"
  rm -rf "$work/libpng1.6"
}

# Widgets and what they rest on, for programs that draw with the processor. The tools that run while something is built
# (moc, uic, rcc) are those of Debian's Qt of the same version. Tablets are out because Debian's sources leave out the
# header that they need.
provide_qt() {
  local off=(
    sql network printsupport dbus xml concurrent          # modules
    opengl vulkan direct2d1_1 tabletevent                 # ways to draw and point
    gif jpeg textodfwriter                                # formats
    androiddeployqt windeployqt qmake                     # tools
    system_zlib                                           # not Debian's: a copy that is linked in
  )
  local options=(-DQT_HOST_PATH=/usr "-DQT_HOST_PATH_CMAKE_DIR=/usr/lib/$(g++ -dumpmachine)/cmake"
    -DQT_BUILD_TESTS=OFF -DQT_BUILD_EXAMPLES=OFF -DINPUT_opengl=no)
  local feature
  for feature in "${off[@]}"; do options+=("-DFEATURE_$feature=OFF"); done

  download_source qt6-base
  build_library Qt "$work/qt6-base" "${options[@]}"

  # The licences of what Qt carries in its own library files go into what is handed out.
  mkdir -p "$prefix/licences/qt"
  cp "$work/qt6-base/debian/copyright" "$prefix/licences/qt/"
  rm -rf "$work/qt6-base"
}

provide headers libcli11-dev nlohmann-json3-dev
provide googletest googletest
provide pugixml libpugixml-dev
provide zlib zlib1g-dev
provide png libpng-dev zlib1g-dev
provide qt qt6-base-dev
