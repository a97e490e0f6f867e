#!/usr/bin/env bash
# Makes the setup program for Windows out of the folder that package.sh makes. The same folder gives the same program.
#   installer.sh             builds what is missing, and puts it into build/packages
#   installer.sh FOLDER OUT  takes the folder FOLDER as it is, and puts it into OUT
#   --fast, before these     compresses less, which takes a few seconds instead of half a minute
set -euo pipefail
project=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
. "$project/packaging/source_date.sh"

compressor=lzma
[ "${1-}" != --fast ] || { compressor=zlib; shift; }
if [ $# -eq 2 ]; then
  folder=$(realpath "$1") out=$(realpath -m "$2")
elif [ $# -eq 0 ]; then
  out=$project/build/packages
  folder=$("$project/packaging/windows/package.sh")
  folder=${folder%.zip}
else
  sed -n '2,/^set/s/^# \?//p' "$0" >&2
  exit 2
fi
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir -p "$out"

# recorded NAME: what the programs' version record tells.
recorded() {
  sed -n "s/^#define CARVELLO_$1 \"\(.*\)\"\$/\1/p" "$project/src/support/version_record.h"
}

# each_line MACRO LIST PREFIX: a macro that calls the macro it is given for every line of the list, which has slashes:
# with the line itself where PREFIX is "file", and with the line in Windows' way.
each_line() {
  local path
  echo "!macro $1 DO"
  while IFS= read -r path; do
    # What the setup program's language would take as its own.
    [[ $path =~ ^[A-Za-z0-9._/+\ -]+$ ]] || { echo "no name for the setup program: $path" >&2; return 1; }
    if [ "$3" = file ]; then echo "  !insertmacro \${DO} \"$path\" \"${path//\//\\}\""
    else echo "  !insertmacro \${DO} \"${path//\//\\}\""; fi
  done < "$2"
  echo '!macroend'
}
(cd "$folder" && find . -type f -printf '%P\n') | LC_ALL=C sort > "$work/files"
(cd "$folder" && find . -mindepth 1 -type d -printf '%P\n') | LC_ALL=C sort > "$work/folders"
LC_ALL=C sort -r "$work/folders" > "$work/folders-up"
{
  each_line EachFile "$work/files" file
  each_line EachFolder "$work/folders" folder
  each_line EachFolderUp "$work/folders-up" folder
} > "$work/files.nsh"
longest=$(sed 's|^|/.carvello-setup/|' "$work/files" | wc -L)

convert -size 164x314 gradient:'#f4f7fa-#c9d6e2' "$project/packaging/icons/carvello-128.png" \
  -gravity north -geometry +0+40 -composite -type TrueColor "BMP3:$work/picture.bmp"

setup=$out/$(basename "$folder")-setup.exe
touch --date "@$(source_date "$project")" "$work"/* # which setup gives to what it unpacks
kilobytes=$(find "$folder" -type f -printf '%s\n' | awk '{ sum += int(($1 + 1023) / 1024) } END { print sum }')
if ! TZ=UTC makensis -V2 -WX -INPUTCHARSET UTF8 "-DSOURCE=$folder" "-DFILES=$work/files.nsh" "-DLONGEST=$longest" \
  "-DKILOBYTES=$kilobytes" "-DSETUP=$setup" "-DCOMPRESSOR=$compressor" "-DPROJECT=$project" \
  "-DPICTURE=$work/picture.bmp" "-DVERSION=$(recorded PRODUCT_VERSION)" \
  "-DFILE_VERSION=$(recorded FILE_VERSION)" "-DPUBLISHER=$(recorded COMPANY_NAME)" \
  "-DCOPYRIGHT=$(recorded LEGAL_COPYRIGHT)" "-DDESCRIPTION=$(recorded FILE_DESCRIPTION)" \
  "$project/packaging/windows/installer.nsi" > "$work/log" 2>&1; then
  cat "$work/log" >&2
  exit 1
fi
echo "$setup"
