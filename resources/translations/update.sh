#!/usr/bin/env bash
# Brings the translations up to date with the sources: texts that are new come in without a translation ("unfinished"),
# those that are gone go. Then translate what is new, with a text editor or Qt Linguist; the tests tell what is missing.
#   resources/translations/update.sh [FOLDER]   the translations are in FOLDER, here unless given
set -euo pipefail
project=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
folder=$(cd "${1-$project/resources/translations}" && pwd)
lupdate=$(PATH=/usr/lib/qt6/bin:$PATH command -v lupdate || command -v lupdate-qt6 || command -v lupdate6)
cd "$project"
for language in de fr; do
  "$lupdate" -silent -no-obsolete -locations none -I src src/ui resources -extensions cpp,h,ui \
    -source-language en -target-language "$language" -ts "$folder/carvello_$language.ts"
done
