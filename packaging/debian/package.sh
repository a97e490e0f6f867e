#!/usr/bin/env bash
# Makes the Debian packages carvello and carvello-cli, in build/packages, from the sources as they lie here, a clone's or a
# source archive's, without what builds leave in them. Two runs on the same system make the same bytes.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
. packaging/debian/packages.sh
install_packages "${packages_debian[@]}"

out=$PWD/build/packages
work=$out/work
source=$work/carvello # one path whatever the version, though none of it gets into the packages
rm -rf "$work"
mkdir -p "$source"
trap 'rm -rf "$work"' EXIT

# All that .gitignore does not name, asked of a repository that knows nothing yet: in an unpacked archive there is no other,
# and what was deleted here is in none of the answers. What a user leaves out of all repositories does not count.
git init -q --bare "$work/none"
git -c core.excludesFile=/dev/null --git-dir="$work/none" --work-tree="$PWD" ls-files -z --others --exclude-standard |
  xargs -0 cp --parents --no-dereference -t "$source"
cp -r packaging/debian/package "$source/debian"
# The commit, which the copy has no history to tell from.
cmake -D SOURCE="$PWD" -D OUT="$work/commit.cpp" -P cmake/build_commit.cmake
sed -n 's/.*kBuildCommit = "\(..*\)";/\1/p' "$work/commit.cpp" > "$source/cmake/commit.txt"

log=$out/debian.log
echo 'Building the Debian packages' >&2
if ! (cd "$source" && DEB_BUILD_OPTIONS=terse dpkg-buildpackage --build=binary --no-sign -j"$(nproc)") > "$log" 2>&1; then
  tail -n 50 "$log" >&2
  exit 1
fi
rm -f "$out"/*.deb
# Those with debug information have names that end in dbgsym.
find "$work" -maxdepth 1 -name '*.deb' ! -name '*dbgsym*' -exec mv -t "$out" {} +
ls "$out"/*.deb
