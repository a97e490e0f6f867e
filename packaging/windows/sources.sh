#!/usr/bin/env bash
# Packs the sources of what is handed out for Windows: this project as it was last committed, and Debian's source packages
# of the libraries that are linked in, as build-dependencies.sh has built them. The licences want the archive to go
# wherever the folder goes.
#   sources.sh           puts it into build/windows-package
#   sources.sh FOLDER    puts it into FOLDER
set -euo pipefail
folder=$(realpath -m "${1:-$(dirname "${BASH_SOURCE[0]}")/../../build/windows-package}")
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
. packaging/debian/packages.sh
. packaging/debian/source_packages.sh
. packaging/source_date.sh
project=$PWD
. packaging/windows/third_party.sh
install_packages dpkg-dev git

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

version=$(sed -n 's/^#define CARVELLO_PRODUCT_VERSION "\(.*\)"$/\1/p' src/support/version_record.h)
name=Carvello-$version-sources
mkdir -p "$folder" "$work/$name"
git archive --prefix=carvello/ --output "$work/$name/carvello.tar.gz" HEAD
# linked_in PACKAGE: the version of the sources that what is linked in was made of.
linked_in() {
  case $1 in
    qt6-translations) dpkg-query -W -f '${source:Version}' qt6-translations-l10n ;;
    cli11) dpkg-query -W -f '${source:Version}' libcli11-dev ;;
    nlohmann-json3) dpkg-query -W -f '${source:Version}' nlohmann-json3-dev ;;
    qt6-base) built_from qt qt6-base-dev ;;
    pugixml) built_from pugixml libpugixml-dev ;;
    zlib) built_from zlib zlib1g-dev ;;
    libpng1.6) built_from png libpng-dev ;;
  esac
}

for package in qt6-base qt6-translations pugixml zlib libpng1.6 cli11 nlohmann-json3; do
  download_source "$package"
  given=$(sed -n '/^Version: /{s///p;q}' "$work/${package}_"*.dsc)
  wanted=$(linked_in "$package")
  if [ "$given" != "$wanted" ]; then
    echo "The sources of $package $wanted, which are linked in, cannot be had: $given can. Upgrade this system, and build" \
      "its libraries for Windows anew." >&2
    exit 1
  fi
  mv "$work/${package}_"* "$work/$name/"
done
# The same files give the same archive.
tar -C "$work" --sort=name --mtime="@$(source_date "$PWD")" --owner=0 --group=0 --numeric-owner --mode=u=rwX,go=rX \
  -cf "$folder/$name.tar" "$name"
echo "$folder/$name.tar"
