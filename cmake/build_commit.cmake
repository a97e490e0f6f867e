# Run with every build: cmake -D SOURCE=FOLDER -D OUT=FILE -P build_commit.cmake. Writes the source file OUT, which tells the
# commit that the sources in SOURCE are of, and touches it only when that has changed: nothing is linked anew otherwise.
#
# cmake/commit.txt tells it in an archive that git made, or in a copy whose maker wrote it there; else the history does.
file(STRINGS "${SOURCE}/cmake/commit.txt" commit LIMIT_COUNT 1)
if(NOT commit MATCHES "^[0-9a-f]+(, modified)?$")
  set(commit "")
  # A history further up is that of another project, which these sources lie in.
  if(EXISTS "${SOURCE}/.git")
    find_program(CARVELLO_GIT git)
  endif()
  if(CARVELLO_GIT)
    # Whoever owns the folder, and whatever history the caller's environment names, as hooks of git do.
    foreach(variable GIT_DIR GIT_WORK_TREE GIT_INDEX_FILE)
      unset(ENV{${variable}})
    endforeach()
    set(git ${CARVELLO_GIT} -c "safe.directory=${SOURCE}" --no-optional-locks -C "${SOURCE}")
    execute_process(COMMAND ${git} rev-parse --verify HEAD
      OUTPUT_VARIABLE commit OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET RESULT_VARIABLE failed)
    if(failed)
      set(commit "")
    else()
      execute_process(COMMAND ${git} status --porcelain --untracked-files=no
        OUTPUT_VARIABLE changes ERROR_QUIET RESULT_VARIABLE failed)
      if(failed OR NOT changes STREQUAL "")
        string(APPEND commit ", modified")
      endif()
    endif()
  endif()
endif()

set(text "#include \"support/build_commit.h\"\n\nnamespace carvello {\n\nconst char* const kBuildCommit = \"${commit}\";\n\n}\n")
if(EXISTS "${OUT}")
  file(READ "${OUT}" before)
  if(before STREQUAL text)
    return()
  endif()
endif()
file(WRITE "${OUT}" "${text}")
