#!/usr/bin/env bash
# Makes everything of a release, in build/packages: the source archive, the Debian packages, the zip and the setup
# program for Windows with the sources of what is linked in, of each the bill of materials (SPDX), and SHA256SUMS over all.
#   release.sh                     all of it
#   release.sh --without windows   without what is for Windows; may also be debian
#   release.sh --check             looks whether the sources can be released, and makes nothing
# The sources must be as committed, CHANGELOG.md must begin with their version, and a tag of the version must be of this
# commit. What was made of this commit before, and lies there as it was made, is not made again: after a failure, or an
# interruption, start it again.
set -euo pipefail
project=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$project"
. packaging/source_date.sh
. packaging/debian/packages.sh

out=$project/build/packages
made=$out/release # what was made of which commit
without=' '
check=

usage() {
  sed -n '2,/^set/{/^set/d;s/^# \?//p}' "$0" >&2
  exit 2
}

while [ $# -gt 0 ]; do
  case $1 in
    --without)
      [[ ${2-} =~ ^(windows|debian)$ ]] || usage
      without+="$2 "
      shift
      ;;
    --check) check=1 ;;
    *) usage ;;
  esac
  shift
done

refuse() {
  echo "release.sh: $*" >&2
  exit 1
}

# ---- whether these sources can be released ---------------------------------------------------------------------

[ -e .git ] || refuse 'this folder is no git repository, and only a commit can be released'
commit=$(git rev-parse --verify HEAD 2> /dev/null) || refuse 'nothing was committed yet'
changes=$(git status --porcelain)
[ -z "$changes" ] || refuse "the sources are not as committed; commit these or take them away:
$changes"
version=$(sed -nE 's/^#define CARVELLO_FILE_VERSION "([0-9]+\.[0-9]+\.[0-9]+)\.[0-9]+"$/\1/p' src/support/version_record.h)
[ -n "$version" ] || refuse 'src/support/version_record.h tells no version'
newest=$(sed -nE 's/^## ([0-9][^ ]*).*$/\1/p' CHANGELOG.md | head -n 1)
[ "$newest" = "$version" ] ||
  refuse "CHANGELOG.md begins with ${newest:-no version}, and the version of these sources is $version"
tagged=$(git rev-parse --verify --quiet "refs/tags/v$version^{commit}" || true)
[ -z "$tagged" ] || [ "$tagged" = "$commit" ] ||
  refuse "the tag v$version is of commit $tagged, and this is $commit: count the version up"
if [ -n "$check" ]; then
  echo "Version $version can be released from $commit."
  exit 0
fi

# ---- making it -------------------------------------------------------------------------------------------------

install_packages "${packages_release[@]}"
SOURCE_DATE_EPOCH=$(source_date "$project")
export SOURCE_DATE_EPOCH
mkdir -p "$made"

# step NAME: calls make_NAME, which makes the files that files_NAME lists, unless they lie there as they were made of this
# commit.
step() {
  local name=$1 record=$made/$1 files
  if [ "$(head -n 1 "$record" 2> /dev/null)" = "$commit" ] &&
    (cd "$out" && sed 1d "$record" | sha256sum --check --quiet) > /dev/null 2>&1; then
    echo "Already there: $name" >&2
    return 0
  fi
  echo "Making: $name" >&2
  rm -f "$record"
  (cd "$out" && "files_$name" | xargs -r -d '\n' rm -f --)
  "make_$name"
  files=$(cd "$out" && "files_$name")
  [ -n "$files" ] || refuse "$name made nothing"
  (cd "$out" && echo "$commit" && xargs -d '\n' sha256sum -- <<< "$files") > "$record.new"
  mv "$record.new" "$record"
}

# In the present folder, a line each, those that are there.
list() {
  local file
  for file; do
    [ ! -e "$file" ] || printf '%s\n' "$file"
  done
}
files_source() { list "carvello-$version.tar.xz"; }
files_debian() { list carvello*.deb; }
files_windows() { list Carvello-*.zip Carvello-*.exe Carvello-*.tar; }

make_source() {
  git archive --format=tar --prefix="carvello-$version/" "$commit" | xz --threads=1 -6 > "$made/source.tar.xz"
  mv "$made/source.tar.xz" "$out/carvello-$version.tar.xz"
}

make_debian() {
  packaging/debian/package.sh >&2
}

make_windows() {
  rm -f build/windows-package/Carvello-*.{zip,tar} # also of other versions
  packaging/windows/installer.sh >&2 # with the zip, as which it is packed
  packaging/windows/sources.sh >&2
  (cd build/windows-package && files_windows | xargs -d '\n' cp -t "$out" --)
}

kinds=(source)
for kind in debian windows; do
  [[ $without == *" $kind "* ]] || kinds+=("$kind")
done
for kind in "${kinds[@]}"; do step "$kind"; done

cd "$out"
# Quick, and they hold the packages' checksums: always anew. The sources of what is linked in for Windows are listed with
# the programs that it is linked into.
list *.spdx.json SHA256SUMS | xargs -r -d '\n' rm -f --
files=$(for kind in "${kinds[@]}"; do "files_$kind"; done)
grep -Ev '^Carvello-.*\.tar$' <<< "$files" | xargs -d '\n' "$project/packaging/sbom.py" > /dev/null
files=$(printf '%s\n' "$files" *.spdx.json | LC_ALL=C sort)
xargs -d '\n' sha256sum -- <<< "$files" > "$made/SHA256SUMS"
mv "$made/SHA256SUMS" SHA256SUMS
printf '%s\n' "$files" SHA256SUMS
