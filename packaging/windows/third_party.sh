# What is linked into the programs for Windows, of which version and under which licence. Sourced, with the project's
# folder in $project.

deps=$project/build/windows-deps

# built_from NAME PACKAGE: the version of PACKAGE, or of the sources that it is of, that build-dependencies.sh has built
# NAME from.
built_from() {
  local version
  version=$(cat "$deps/stamps/$1.sources" 2> /dev/null || true)
  [ -n "$version" ] || version=$(sed -nE "s/^$2(:[a-z0-9]+)?\t(.*)$/\2/p" "$deps/stamps/$1" | head -n 1)
  [ -n "$version" ] || { echo "$1 was not built by packaging/windows/build-dependencies.sh" >&2; return 1; }
  echo "$version"
}

# installed_version PACKAGE
installed_version() {
  dpkg-query -W -f '${Version}\n' "$1"
}

# text_of FILE EXPRESSION: the first text in FILE's bytes that the extended regular expression's group stands for.
text_of() {
  local text
  text=$(sed -nE "s/^.*$2.*$/\1/p" <(strings -a "$deps/$1") | head -n 1)
  [ -n "$text" ] || { echo "$1 does not tell its version" >&2; return 1; }
  echo "$text"
}

# A line for each: name, version, licence (SPDX), the file of licences/ with its text, and where that text comes from.
# Those of Qt's own copies of libraries stand in its text.
third_party() {
  local doc=/usr/share/doc qt_text=$deps/licences/qt/copyright freetype=include/QtFreetype/freetype/freetype.h
  local qt translations pugixml zlib png cli11 json mingw gcc nsis
  qt=$(built_from qt qt6-base-dev) && translations=$(installed_version qt6-translations-l10n) &&
    pugixml=$(built_from pugixml libpugixml-dev) && zlib=$(built_from zlib zlib1g-dev) &&
    png=$(built_from png libpng-dev) && cli11=$(built_from headers libcli11-dev) &&
    json=$(built_from headers nlohmann-json3-dev) && mingw=$(installed_version mingw-w64-common) &&
    gcc=$(installed_version gcc-mingw-w64-base) && nsis=$(installed_version nsis-common) || return 1
  local qt_freetype qt_harfbuzz qt_png qt_pcre2 qt_zlib
  qt_freetype=$(text_of $freetype 'FREETYPE_MAJOR +([0-9]+)').$(text_of $freetype 'FREETYPE_MINOR +([0-9]+)') &&
    qt_freetype+=.$(text_of $freetype 'FREETYPE_PATCH +([0-9]+)') &&
    qt_harfbuzz=$(text_of lib/libQt6BundledHarfbuzz.a '^([0-9]+\.[0-9]+\.[0-9]+)$') &&
    qt_png=$(text_of lib/libQt6BundledLibpng.a 'libpng version ([0-9.]+)') &&
    qt_pcre2=$(text_of lib/libQt6BundledPcre2.a '^([0-9]+\.[0-9]+) 20[0-9-]+$') &&
    qt_zlib=$(text_of lib/libQt6BundledZLIB.a ' inflate ([0-9.]+) Copyright') || return 1

  printf '%s\t%s\t%s\t%s\t%s\n' \
    'Qt' "$qt" 'LGPL-3.0-only' Qt "$qt_text" \
    'FreeType, in Qt' "$qt_freetype" 'FTL OR GPL-2.0-only' Qt "$qt_text" \
    'HarfBuzz, in Qt' "$qt_harfbuzz" 'MIT' Qt "$qt_text" \
    'libpng, in Qt' "$qt_png" 'libpng-2.0' Qt "$qt_text" \
    'PCRE2, in Qt' "$qt_pcre2" 'BSD-3-Clause' Qt "$qt_text" \
    'zlib, in Qt' "$qt_zlib" 'Zlib' Qt "$qt_text" \
    'Qt translations' "$translations" 'GPL-3.0-only WITH Qt-GPL-exception-1.0' Qt-translations \
    "$doc/qt6-translations-l10n/copyright" \
    'pugixml' "$pugixml" 'MIT' pugixml "$doc/libpugixml-dev/copyright" \
    'zlib' "$zlib" 'Zlib' zlib "$doc/zlib1g-dev/copyright" \
    'libpng' "$png" 'libpng-2.0' libpng "$doc/libpng-dev/copyright" \
    'CLI11' "$cli11" 'BSD-3-Clause' CLI11 "$doc/libcli11-dev/copyright" \
    'JSON for Modern C++' "$json" 'MIT' nlohmann-json "$doc/nlohmann-json3-dev/copyright" \
    'mingw-w64 runtime' "$mingw" 'ZPL-2.1 AND MIT AND BSD-3-Clause' mingw-w64 "$doc/mingw-w64-common/copyright" \
    'GCC runtime' "$gcc" 'GPL-3.0-or-later WITH GCC-exception-3.1' GCC "$doc/gcc-mingw-w64-base/copyright" \
    'NSIS, in the setup program' "$nsis" 'Zlib' NSIS "$doc/nsis-common/copyright"
}
