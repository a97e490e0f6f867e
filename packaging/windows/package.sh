#!/usr/bin/env bash
# Makes the folder that is handed out for Windows, and a zip of it: the programs, the downconverter library, help, README
# and licences. The programs are stripped and need nothing that is not in the folder or part of Windows.
#   package.sh               builds what is missing, and puts both into build/windows-package
#   package.sh BUILD FOLDER  takes the build folder BUILD as it is, and puts both into FOLDER
set -euo pipefail
project=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)

if [ $# -eq 2 ]; then
  build=$1 out=$2
elif [ $# -eq 0 ]; then
  build=$project/build/windows out=$project/build/windows-package
  cd "$project"
  . packaging/debian/packages.sh
  . cmake/build.sh
  install_packages "${packages_windows[@]}"
  packaging/windows/build-dependencies.sh
  configure windows
  cmake --build --preset windows
else
  sed -n '2,/^set/s/^# \?//p' "$0" >&2
  exit 2
fi

version=$(sed -n 's/^#define CARVELLO_PRODUCT_VERSION "\(.*\)"$/\1/p' "$project/src/support/version_record.h")
name=Carvello-$version-windows-x86_64
folder=$out/$name
rm -rf "$folder" "$folder.zip"
mkdir -p "$folder/licences"
cmake --install "$build" --prefix "$folder" --strip > /dev/null

# add_licence NAME FILE: what a library linked into the programs asks to be handed out with it.
add_licence() {
  cp "$2" "$folder/licences/$1.txt"
}
add_licence Carvello "$project/LICENSE"
add_licence Qt "$project/build/windows-deps/licences/qt/copyright"
add_licence pugixml /usr/share/doc/libpugixml-dev/copyright
add_licence CLI11 /usr/share/doc/libcli11-dev/copyright
add_licence nlohmann-json /usr/share/doc/nlohmann-json3-dev/copyright
add_licence mingw-w64 /usr/share/doc/mingw-w64-common/copyright
add_licence GCC /usr/share/doc/gcc-mingw-w64-base/copyright
dpkg-query -W -f '${source:Package} ${source:Version}\n' qt6-base-dev libpugixml-dev libcli11-dev nlohmann-json3-dev \
  mingw-w64-common gcc-mingw-w64-base > "$folder/licences/libraries.txt"
# The texts that those refer to.
for text in Apache-2.0 GPL-2 GPL-3 LGPL-2.1 LGPL-3; do add_licence "$text" "/usr/share/common-licenses/$text"; done

(cd "$out" && cmake -E tar cf "$name.zip" --format=zip "$name")
echo "$folder.zip"
