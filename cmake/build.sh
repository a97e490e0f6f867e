# How run and test configure a build. Sourced by them, from the project's folder.

# A compiler cache is used where there is one; paths relative to the project let another clone profit from it.
if command -v ccache > /dev/null; then
  export CMAKE_CXX_COMPILER_LAUNCHER=ccache
  export CCACHE_BASEDIR=$PWD
  export CCACHE_NOHASHDIR=1
  export CCACHE_SLOPPINESS=pch_defines,time_macros  # as precompiled headers need it
fi

# configure PRESET [CMAKE-OPTION…]: quiet unless it fails.
configure() {
  local log
  log=$(mktemp)
  if ! cmake --preset "$1" -DCMAKE_DISABLE_PRECOMPILE_HEADERS=OFF "${@:2}" > "$log" 2>&1; then
    cat "$log" >&2
    rm -f "$log"
    return 1
  fi
  rm -f "$log"
}
