# The translations of the window, built into the program: its own of resources/translations, made binary by lrelease, and
# those of the toolkit's own windows and buttons, so that they are there wherever the program runs. Both come from the
# machine that builds, also when it builds for another system, whose toolkit may not know zstd.
find_program(CARVELLO_LRELEASE NAMES lrelease lrelease-qt6 lrelease6
  HINTS /usr/lib/qt6/bin "${Qt6_DIR}/../../../bin" "${Qt6_DIR}/../../tools/Qt6/bin" NO_CMAKE_FIND_ROOT_PATH REQUIRED)
find_path(CARVELLO_QT_TRANSLATIONS qtbase_de.qm
  HINTS /usr/share/qt6/translations "${Qt6_DIR}/../../../share/qt6/translations" "${Qt6_DIR}/../../../translations"
    "${Qt6_DIR}/../../translations/Qt6"
  NO_CMAKE_FIND_ROOT_PATH REQUIRED)

# carvello_translations(VARIABLE LANGUAGE…): sets the variable to the source that holds them as the resource "translations".
function(carvello_translations variable)
  set(files)
  set(list "<RCC>\n  <qresource prefix=\"/translations\">\n")
  foreach(language ${ARGN})
    set(source ${PROJECT_SOURCE_DIR}/resources/translations/carvello_${language}.ts)
    set(own ${CMAKE_CURRENT_BINARY_DIR}/carvello_${language}.qm)
    add_custom_command(OUTPUT ${own}
      COMMAND ${CARVELLO_LRELEASE} -silent ${source} -qm ${own}
      DEPENDS ${source} COMMENT "Translations of ${language}" VERBATIM)
    set(toolkit ${CARVELLO_QT_TRANSLATIONS}/qtbase_${language}.qm)
    string(APPEND list "    <file alias=\"carvello_${language}.qm\">${own}</file>\n"
      "    <file alias=\"qtbase_${language}.qm\">${toolkit}</file>\n")
    list(APPEND files ${own} ${toolkit})
  endforeach()
  string(APPEND list "  </qresource>\n</RCC>\n")
  set(description ${CMAKE_CURRENT_BINARY_DIR}/translations.qrc)
  file(GENERATE OUTPUT ${description} CONTENT "${list}")
  set(result ${CMAKE_CURRENT_BINARY_DIR}/qrc_translations_built_in.cpp)
  add_custom_command(OUTPUT ${result}
    COMMAND Qt6::rcc --no-zstd --name translations --output ${result} ${description}
    DEPENDS ${files} ${description} VERBATIM)
  set_source_files_properties(${result} PROPERTIES SKIP_AUTOGEN ON)
  set(${variable} ${result} PARENT_SCOPE)
endfunction()
