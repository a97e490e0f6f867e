# Sourced by what makes packages.

# source_date PROJECT: the time that what is packed is given, in seconds since 1970: SOURCE_DATE_EPOCH where it is set, the
# time of the last commit, or where the sources came without git, that of the newest file in their folder.
source_date() {
  [ -z "${SOURCE_DATE_EPOCH-}" ] || { echo "$SOURCE_DATE_EPOCH"; return; }
  # A history further up is that of another project, which these sources lie in.
  { [ -e "$1/.git" ] && git -c "safe.directory=$(realpath "$1")" -C "$1" log -1 --format=%ct 2> /dev/null; } ||
    find "$1" -maxdepth 1 -type f -printf '%Ts\n' | sort -n | tail -n 1
}
