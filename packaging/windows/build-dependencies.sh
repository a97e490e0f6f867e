#!/usr/bin/env bash
# Puts the libraries that Carvello uses into build/windows-deps, for the cross build. Debian has no mingw-w64 packages of
# them: pugixml is built from Debian's own source package, GoogleTest from the sources that Debian installs, and CLI11
# and nlohmann-json are headers only. Nothing is done when it was done for the same versions before.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."

prefix=$PWD/build/windows-deps
stamp=$prefix/versions
versions=$(dpkg-query -W libpugixml-dev googletest libcli11-dev nlohmann-json3-dev g++-mingw-w64-x86-64-posix)
if [ "$(cat "$stamp" 2>/dev/null)" = "$versions" ]; then
  exit 0
fi

rm -rf "$prefix"
mkdir -p "$prefix/include" "$prefix/share/cmake"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# download_source PACKAGE FOLDER: unpacks Debian's source package. The machine's package sources rarely name source
# packages, so a copy of them that does is used, with lists and cache of its own: the machine's are left alone.
download_source() {
  local package=$1 folder=$2 etc=$work/apt/etc file
  mkdir -p "$etc/sources.list.d" "$work/apt/lists/partial" "$work/apt/cache/archives/partial"
  for file in /etc/apt/sources.list /etc/apt/sources.list.d/*.list; do
    [ ! -e "$file" ] || sed 's/^[[:space:]]*deb[[:space:]]/deb-src /' "$file" > "$etc/sources.list.d/$(basename "$file" .list).list"
  done
  for file in /etc/apt/sources.list.d/*.sources; do
    [ ! -e "$file" ] || sed 's/^Types:.*/Types: deb-src/I' "$file" > "$etc/sources.list.d/$(basename "$file")"
  done
  local options=(-o "Dir::Etc::SourceList=/dev/null" -o "Dir::Etc::SourceParts=$etc/sources.list.d"
    -o "Dir::State::Lists=$work/apt/lists" -o "Dir::Cache=$work/apt/cache" -o APT::Sandbox::User=root
    -o Acquire::Retries=3 -q)
  # A source of somebody else that has no source packages does not matter, as long as the package is found.
  apt-get "${options[@]}" update > "$work/log" 2>&1 || true
  (cd "$work" && apt-get "${options[@]}" source --download-only "$package") >> "$work/log" 2>&1 &&
    dpkg-source --no-check -x "$work/${package}"_*.dsc "$folder" >> "$work/log" 2>&1 || {
      cat "$work/log" >&2
      echo "The source package of $package could not be downloaded (see above)." >&2
      return 1
    }
}

# build_library NAME SOURCE [CMAKE-OPTION…]
build_library() {
  local name=$1 source=$2
  shift 2
  {
    cmake -G Ninja -S "$source" -B "$work/build-$name" -DCMAKE_BUILD_TYPE=Release -DBUILD_SHARED_LIBS=OFF \
      -DCMAKE_TOOLCHAIN_FILE="$PWD/cmake/mingw-w64-x86_64.cmake" -DCMAKE_INSTALL_PREFIX="$prefix" "$@" &&
      cmake --build "$work/build-$name" --target install
  } > "$work/log" 2>&1 || {
    cat "$work/log" >&2
    echo "$name could not be built for Windows (see above)." >&2
    return 1
  }
}

echo 'Building the libraries for Windows' >&2
download_source pugixml "$work/pugixml"
build_library pugixml "$work/pugixml"
build_library googletest /usr/src/googletest
cp -r /usr/include/CLI /usr/include/nlohmann "$prefix/include/"
cp -r /usr/share/cmake/CLI11 /usr/share/cmake/nlohmann_json "$prefix/share/cmake/"
echo "$versions" > "$stamp"
