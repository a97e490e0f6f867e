# The downconverter library is loaded from the program's own folder, so the two are installed into one: below lib, with
# a link to the program where programs are looked for. On Windows that folder is the whole of it.
include(GNUInstallDirs)

if(WIN32)
  install(TARGETS carvello-cli Vantrel RUNTIME DESTINATION .)
  install(FILES README.md LICENSE DESTINATION .)
else()
  set(folder ${CMAKE_INSTALL_LIBDIR}/carvello)
  install(TARGETS carvello-cli Vantrel RUNTIME DESTINATION ${folder} LIBRARY DESTINATION ${folder})

  file(RELATIVE_PATH target ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR}/carvello/carvello-cli)
  file(CREATE_LINK ${target} ${CMAKE_CURRENT_BINARY_DIR}/carvello-cli SYMBOLIC)
  install(FILES ${CMAKE_CURRENT_BINARY_DIR}/carvello-cli DESTINATION ${CMAKE_INSTALL_BINDIR})

  install(DIRECTORY docs/man/ DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
  install(FILES README.md LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR})
  install(DIRECTORY docs/ DESTINATION ${CMAKE_INSTALL_DOCDIR} FILES_MATCHING PATTERN "*.md" PATTERN man EXCLUDE)
endif()
