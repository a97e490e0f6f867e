# What a system without Debian's packages needs: whether it is there, and what it is called in the packages of others.
# Sourced by packages.sh where there is no apt-get.

# Debian's name, what it is looked for by (- is for nothing), and the name on Fedora, openSUSE, Arch and
# Alpine. Names that hold several of Debian's stand more than once.
other_names='
g++                  command:c++         gcc-c++           gcc-c++           gcc             g++
cmake                command:cmake       cmake             cmake             cmake           cmake
ninja-build          command:ninja       ninja-build       ninja             ninja           samurai
libpugixml-dev       header:pugixml.hpp  pugixml-devel     pugixml-devel     pugixml         pugixml-dev
libcli11-dev         header:CLI/CLI.hpp  cli11-devel       cli11-devel       cli11           cli11-dev
nlohmann-json3-dev   header:nlohmann/json.hpp json-devel        nlohmann_json-devel nlohmann-json   nlohmann-json
libpng-dev           header:png.h        libpng-devel      libpng16-devel    libpng          libpng-dev
qt6-base-dev         cmake:Qt6Widgets    qt6-qtbase-devel  qt6-base-devel    qt6-base        qt6-qtbase-dev
qt6-l10n-tools       command:lrelease    qt6-qttools-devel qt6-linguist-devel qt6-tools       qt6-qttools-dev
qt6-translations-l10n file:qtbase_de.qm   qt6-qttranslations qt6-translations  qt6-translations qt6-qttranslations
libgtest-dev         header:gtest/gtest.h gtest-devel       gtest             gtest           gtest-dev
libgmock-dev         header:gmock/gmock.h gmock-devel       gmock             gtest           gtest-dev
libfftw3-dev         header:fftw3.h      fftw-devel        fftw3-devel       fftw            fftw-dev
sox                  command:sox         sox               sox               sox             sox
sndfile-programs     command:sndfile-info libsndfile-utils  libsndfile-progs  libsndfile      libsndfile-progs
python3              python:sys          python3           python3           python          python3
python3-numpy        python:numpy        python3-numpy     python3-numpy     python-numpy    py3-numpy
python3-jsonschema   python:jsonschema   python3-jsonschema python3-jsonschema python-jsonschema py3-jsonschema
python3-yaml         python:yaml         python3-pyyaml    python3-PyYAML    python-yaml     py3-yaml
dbus-daemon          command:dbus-daemon dbus-daemon       dbus-1-daemon     dbus            dbus
xvfb                 command:Xvfb        xorg-x11-server-Xvfb xorg-x11-server-Xvfb xorg-server-xvfb xvfb
xdotool              command:xdotool     xdotool           xdotool           xdotool         xdotool
imagemagick          command:import      ImageMagick       ImageMagick       imagemagick     imagemagick
at-spi2-core         -                   at-spi2-core      at-spi2-core      at-spi2-core    at-spi2-core
gir1.2-atspi-2.0     python:Atspi        at-spi2-core      typelib-1_0-Atspi-2_0 at-spi2-core    at-spi2-core
python3-gi           python:gi           python3-gobject   python3-gobject   python-gobject  py3-gobject3
zsh                  command:zsh         zsh               zsh               zsh             zsh
slurm-wlm            command:slurmctld   slurm-slurmctld   slurm             slurm-llnl      slurm
munge                command:munged      munge             munge             munge           munge
fish                 command:fish        fish              fish              fish            fish
appstream            command:appstreamcli appstream         AppStream         appstream       appstream
desktop-file-utils   command:desktop-file-validate desktop-file-utils desktop-file-utils desktop-file-utils desktop-file-utils
clang                command:clang++     clang             clang             clang           clang
libclang-rt-dev      -                   compiler-rt       clang             compiler-rt     compiler-rt
clang-format         command:clang-format clang-tools-extra clang-tools       clang           clang-extra-tools
clang-tidy           command:clang-tidy  clang-tools-extra clang-tools       clang           clang-extra-tools
git                  command:git         git               git               git             git
xz-utils             command:xz          xz                xz                xz              xz
'

# column_of_system ID…: which column of the table is this system's, from the most particular name to those that it is
# like; 0 where it is none of them.
column_of_system() {
  local name
  for name; do
    case $name in
      fedora | rhel | centos) echo 3; return ;;
      opensuse* | suse | sles) echo 4; return ;;
      arch) echo 5; return ;;
      alpine) echo 6; return ;;
    esac
  done
  echo 0
}

# has_file PATTERN…: below where the user has CMake look, or where systems keep such things.
has_file() {
  local prefix pattern prefixes
  IFS=: read -r -a prefixes <<< "${CMAKE_PREFIX_PATH-}"
  for prefix in "${prefixes[@]}" /usr/local /usr; do
    for pattern; do
      ! compgen -G "$prefix/$pattern" || return 0
    done
  done
  return 1
}

# is_there KIND:NAME; what is looked for by nothing is taken for there. Python is the distribution's own, as for the
# tests.
is_there() {
  local name=${1#*:}
  case $1 in
    command:ninja) command -v ninja || command -v ninja-build || command -v samu ;;
    command:lrelease)
      command -v lrelease || command -v lrelease-qt6 || command -v lrelease6 ||
        has_file lib/qt6/bin/lrelease bin/lrelease
      ;;
    command:c++) command -v c++ || command -v "${CXX:-g++}" ;;
    command:*) command -v "$name" ;;
    header:*) is_there command:c++ && "$(compiler)" -x c++ -std=c++20 -E - <<< "#include <$name>" ;;
    -) ;;
    cmake:*) has_file "lib*/cmake/$name/${name}Config.cmake" "lib/*/cmake/$name/${name}Config.cmake" ;;
    file:*) has_file "share/qt*/translations/$name" "translations/$name" ;;
    python:Atspi) /usr/bin/python3 -c 'import gi; gi.require_version("Atspi", "2.0")' ;;
    python:*) /usr/bin/python3 -c "import $name" ;;
  esac > /dev/null 2>&1
}

compiler() {
  echo "${CXX:-$(command -v c++ || command -v g++)}"
}

# expect_packages PACKAGE…: goes on where all that these hold is there. Else it names what is missing, and how this
# system installs it, and fails.
expect_packages() {
  local release=${CARVELLO_OS_RELEASE:-/etc/os-release} system ids column install package row
  local missing=() names=() what=()
  system=$(. "$release" 2> /dev/null && echo "${PRETTY_NAME:-${NAME-}}") || true
  ids=$(. "$release" 2> /dev/null && echo "${ID-} ${ID_LIKE-}") || true
  column=$(column_of_system $ids)
  case $column in
    3) install='dnf install' ;;
    4) install='zypper install' ;;
    5) install='pacman -S --needed' ;;
    6) install='apk add' ;;
  esac

  for package; do
    read -r -a row <<< "$(grep -F -m 1 "$package " <<< "$other_names" || true)"
    if [ "${row[0]-}" != "$package" ]; then
      missing+=("$package") # known by Debian's name alone
      names+=("$package")
      what+=("$package")
      continue
    fi
    is_there "${row[1]}" && continue
    missing+=("$package")
    what+=("${row[1]#*:}")
    [ "$column" = 0 ] || names+=("${row[column - 1]}")
  done
  [ ${#missing[@]} -gt 0 ] || return 0

  {
    echo "Carvello installs what it needs on Debian and Ubuntu; this is ${system:-another system}. Missing here:"
    printf '  %s\n' "${what[@]}"
    if [ "$column" = 0 ]; then
      echo 'Install what this system calls these packages of Debian, and try again:'
      echo "  ${missing[*]}"
    else
      echo 'As root, and then try again:'
      echo "  $install $(printf '%s\n' "${names[@]}" | awk '!seen[$0]++' | paste -s -d ' ')"
    fi
  } >&2
  return 1
}
