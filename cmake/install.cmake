# The downconverter library is loaded from the program's own folder, so the programs and it are installed into one: below
# lib, with links to the programs where programs are looked for. On Windows that folder is the whole of it.
include(GNUInstallDirs)

set(programs carvello-cli)
if(CARVELLO_GUI)
  list(APPEND programs carvello)
endif()

if(WIN32)
  install(TARGETS ${programs} Vantrel RUNTIME DESTINATION .)
  install(FILES README.md LICENSE DESTINATION .)
  install(FILES resources/help.rtf DESTINATION . RENAME Help.rtf)
  install(DIRECTORY docs/ DESTINATION docs FILES_MATCHING PATTERN "*.md" PATTERN man EXCLUDE PATTERN pictures EXCLUDE)
else()
  set(folder ${CMAKE_INSTALL_LIBDIR}/carvello)
  install(TARGETS ${programs} Vantrel RUNTIME DESTINATION ${folder} LIBRARY DESTINATION ${folder})

  foreach(program ${programs})
    file(RELATIVE_PATH target ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR}/carvello/${program})
    file(CREATE_LINK ${target} ${CMAKE_CURRENT_BINARY_DIR}/${program} SYMBOLIC)
    install(FILES ${CMAKE_CURRENT_BINARY_DIR}/${program} DESTINATION ${CMAKE_INSTALL_BINDIR})
  endforeach()

  if(CARVELLO_GUI)
    install(FILES packaging/linux/carvello.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
    set(icons ${CMAKE_INSTALL_DATADIR}/icons/hicolor)
    install(FILES resources/carvello.svg DESTINATION ${icons}/scalable/apps)
    foreach(size 16 22 24 32 48 64 128 256)
      install(FILES packaging/icons/carvello-${size}.png DESTINATION ${icons}/${size}x${size}/apps RENAME carvello.png)
    endforeach()
  endif()

  install(DIRECTORY docs/man/ DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
  install(FILES README.md LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR})
  install(DIRECTORY docs/ DESTINATION ${CMAKE_INSTALL_DOCDIR} FILES_MATCHING PATTERN "*.md" PATTERN man EXCLUDE)
endif()
