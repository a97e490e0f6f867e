#!/usr/bin/env bash
# Makes the folder that is handed out for Windows, and a zip of it: the programs, the downconverter library, help, README
# and licences. The programs are stripped and need nothing that is not in the folder or part of Windows. The same build
# gives the same zip.
#   package.sh               builds what is missing, and puts both into build/windows-package
#   package.sh BUILD FOLDER  takes the build folder BUILD as it is, and puts both into FOLDER
set -euo pipefail
project=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
. "$project/packaging/windows/third_party.sh"
. "$project/packaging/source_date.sh"

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
  cmake --build --preset windows >&2 # the name of the zip alone goes to stdout
else
  sed -n '2,/^set/s/^# \?//p' "$0" >&2
  exit 2
fi

version=$(sed -n 's/^#define CARVELLO_PRODUCT_VERSION "\(.*\)"$/\1/p' "$project/src/support/version_record.h")
name=Carvello-$version-windows-x86_64
folder=$out/$name
rm -rf "$folder" "$folder.zip"
mkdir -p "$folder/licences"
SOURCE_DATE_EPOCH=$(source_date "$project")
export SOURCE_DATE_EPOCH # which strip puts into the programs
cmake --install "$build" --prefix "$folder" --strip > /dev/null

# What the libraries that are linked in ask to be handed out with them, and a list of them.
third_party > "$folder/licences/list"
{
  echo "What is linked into Carvello $version for Windows. The texts of the licences are the files beside this one."
  while IFS=$'\t' read -r library library_version licence text source; do
    printf '\n%s\n  version: %s\n  licence: %s\n  text:    %s.txt\n' "$library" "$library_version" "$licence" "$text"
    cp "$source" "$folder/licences/$text.txt"
  done < "$folder/licences/list"
} > "$folder/licences/THIRD-PARTY.txt"
rm "$folder/licences/list"
cp "$project/LICENSE" "$folder/licences/Carvello.txt"
# The texts that those refer to.
for text in Apache-2.0 GPL-2 GPL-3 LGPL-2.1 LGPL-3; do
  cp "/usr/share/common-licenses/$text" "$folder/licences/$text.txt"
done

# The same files give the same zip: in the order of their names, and of the time of the sources.
find "$folder" -exec chmod u=rwX,go=rX {} + -exec touch --date "@$SOURCE_DATE_EPOCH" {} +
TZ=UTC /usr/bin/python3 - "$folder" <<'PYTHON'
import sys
import zipfile
from pathlib import Path

folder = Path(sys.argv[1])
with zipfile.ZipFile(f"{folder}.zip", "w", zipfile.ZIP_DEFLATED) as archive:
    for path in sorted([folder, *folder.rglob("*")]):
        archive.write(path, path.relative_to(folder.parent))
PYTHON
echo "$folder.zip"
