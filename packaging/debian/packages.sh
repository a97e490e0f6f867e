# The Debian packages that each job needs, and how they get onto the machine. Sourced by run and test. Their names are
# those of Debian 12 and later and of Ubuntu 24.04.

packages_build=(g++ cmake ninja-build libpugixml-dev libcli11-dev nlohmann-json3-dev libpng-dev qt6-base-dev
  qt6-l10n-tools qt6-translations-l10n)
packages_test=("${packages_build[@]}" libgtest-dev libgmock-dev libfftw3-dev sox sndfile-programs python3 python3-numpy
  python3-jsonschema python3-yaml dbus-daemon xvfb xdotool imagemagick at-spi2-core gir1.2-atspi-2.0 python3-gi
  zsh fish appstream desktop-file-utils git xz-utils slurm-wlm munge)
packages_windows=("${packages_test[@]}" g++-mingw-w64-x86-64-posix googletest dpkg-dev nsis wine wine64
  fonts-dejavu-core)
packages_debian=("${packages_build[@]}" debhelper dpkg-dev git)
packages_release=(git xz-utils python3 g++) # whose binutils look into programs
packages_fuzz=(clang libclang-rt-dev cmake ninja-build libpugixml-dev libcli11-dev nlohmann-json3-dev libpng-dev)
packages_lint=("${packages_test[@]}" clang-format clang-tidy)

package_is_installed() {
  [ "$(dpkg-query -W -f '${db:Status-Status}' "$1" 2>/dev/null)" = installed ]
}

# As root, or through sudo.
run_apt_get() {
  local command=(env DEBIAN_FRONTEND=noninteractive apt-get -q -y -o DPkg::Lock::Timeout=300 -o Acquire::Retries=3 "$@")
  [ "$(id -u)" = 0 ] || command=(sudo "${command[@]}")
  "${command[@]}"
}

# install_packages PACKAGE…: installs those that are missing and quietly skips the others. Names what could not be
# installed and why, and fails then. A system without Debian's packages is asked whether it has what they hold.
install_packages() {
  local package missing=() failed=() log
  if ! command -v dpkg-query > /dev/null || ! command -v apt-get > /dev/null; then
    . "$(dirname "${BASH_SOURCE[0]}")/../linux/other_systems.sh"
    expect_packages "$@"
    return
  fi
  for package; do
    package_is_installed "$package" || missing+=("$package")
  done
  [ ${#missing[@]} -gt 0 ] || return 0

  if [ "$(id -u)" != 0 ] && ! command -v sudo > /dev/null; then
    echo "Could not install, because this user is not root and there is no sudo: ${missing[*]}" >&2
    return 1
  fi
  echo "Installing ${missing[*]}" >&2
  log=$(mktemp)
  run_apt_get update > "$log" 2>&1 || true # a list that cannot be had matters only if a package is not found then
  if ! run_apt_get install --no-install-recommends "${missing[@]}" >> "$log" 2>&1; then
    # One at a time: the others go in, and those that do not are known.
    for package in "${missing[@]}"; do
      run_apt_get install --no-install-recommends "$package" >> "$log" 2>&1 || failed+=("$package")
    done
  fi
  if [ ${#failed[@]} -gt 0 ]; then
    echo "Could not install: ${failed[*]}" >&2
    grep -E '^(E|W|Err|sudo):?' "$log" | sort -u >&2 || tail -n 20 "$log" >&2
    rm -f "$log"
    return 1
  fi
  rm -f "$log"
}
