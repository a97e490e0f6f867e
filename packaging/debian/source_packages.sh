# Debian's source packages. Sourced by scripts that have a folder $work for what they need for a while.

# logged WHAT COMMAND…: quiet unless it fails.
logged() {
  local what=$1
  shift
  "$@" > "$work/log" 2>&1 || {
    cat "$work/log" >&2
    echo "$what (see above)." >&2
    return 1
  }
}

# download_source PACKAGE: unpacks Debian's source package into $work/PACKAGE. The machine's package sources rarely name
# source packages, so a copy of them that does is used, with lists and cache of its own: the machine's are left alone.
download_source() {
  local package=$1 etc=$work/apt/etc file
  mkdir -p "$etc/sources.list.d" "$work/apt/lists/partial" "$work/apt/cache/archives/partial"
  for file in /etc/apt/sources.list /etc/apt/sources.list.d/*.list; do
    [ ! -e "$file" ] || sed 's/^[[:space:]]*deb[[:space:]]/deb-src /' "$file" > "$etc/sources.list.d/$(basename "$file" .list).list"
  done
  for file in /etc/apt/sources.list.d/*.sources; do
    [ ! -e "$file" ] || sed 's/^Types:.*/Types: deb-src/I' "$file" > "$etc/sources.list.d/$(basename "$file")"
  done
  local options=(-o "Dir::Etc::SourceList=/dev/null" -o "Dir::Etc::SourceParts=$etc/sources.list.d"
    -o "Dir::State::Lists=$work/apt/lists" -o "Dir::Cache=$work/apt/cache" -o APT::Sandbox::User=root
    -o Acquire::Retries=3 -q)
  # A source of somebody else that has no source packages does not matter, as long as the package is found.
  apt-get "${options[@]}" update > "$work/update.log" 2>&1 || true
  (
    cd "$work"
    # The newest, or the one before where a mirror has its list already but not its files.
    local version found=
    for version in $(apt-cache "${options[@]}" madison "$package" | cut -d'|' -f2 | sort -urV); do
      apt-get "${options[@]}" source --download-only "$package=$version" > "$work/log" 2>&1 && found=1 && break
      rm -f "${package}"_*
    done
    if [ -z "$found" ]; then
      cat "$work/log" "$work/update.log" >&2
      echo "The source package of $package could not be downloaded (see above)." >&2
      exit 1
    fi
    logged "The source package of $package could not be unpacked" \
      dpkg-source --no-check -x "${package}"_*.dsc "$package"
  )
}
