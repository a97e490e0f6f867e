# The downconverter library is loaded from the program's own folder, so the programs and it are installed into one: below
# lib, with links to the programs where programs are looked for. On Windows that folder is the whole of it.
include(GNUInstallDirs)

set(programs carvello-cli)
if(CARVELLO_GUI)
  list(APPEND programs carvello)
endif()

if(WIN32)
  install(TARGETS ${programs} Vantrel RUNTIME DESTINATION .)
  install(FILES packaging/windows/README.md LICENSE DESTINATION .)
  # The marker behind the text is for the program, which reads the text up to it.
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS resources/help.rtf)
  file(READ resources/help.rtf help)
  string(REGEX REPLACE "[\r\n]*-#-EOF-#-.*$" "" help "${help}")
  file(WRITE ${PROJECT_BINARY_DIR}/Help.rtf "${help}")
  install(FILES ${PROJECT_BINARY_DIR}/Help.rtf DESTINATION .)
  install(DIRECTORY docs/ DESTINATION docs FILES_MATCHING PATTERN "*.md" PATTERN "*.png" PATTERN man EXCLUDE)
  if(DEFINED VCPKG_INSTALLED_DIR)
    # The licences of what is linked in, as vcpkg collects them.
    install(DIRECTORY ${VCPKG_INSTALLED_DIR}/${VCPKG_TARGET_TRIPLET}/share/ DESTINATION licences
      FILES_MATCHING PATTERN copyright)
  endif()
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
    install(FILES packaging/linux/carvello.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo
      RENAME org.carvello.carvello.metainfo.xml)
    set(icons ${CMAKE_INSTALL_DATADIR}/icons/hicolor)
    install(FILES resources/carvello.svg DESTINATION ${icons}/scalable/apps)
    foreach(size 16 22 24 32 48 64 128 256)
      install(FILES packaging/icons/carvello-${size}.png DESTINATION ${icons}/${size}x${size}/apps RENAME carvello.png)
    endforeach()
  endif()

  # The program knows its options itself.
  set(completions bash bash-completion/completions/carvello-cli zsh zsh/site-functions/_carvello-cli
    fish fish/vendor_completions.d/carvello-cli.fish)
  while(completions)
    list(POP_FRONT completions shell file)
    install(CODE "execute_process(COMMAND $<TARGET_FILE:carvello-cli> completions ${shell}
      OUTPUT_FILE ${CMAKE_CURRENT_BINARY_DIR}/completions.${shell} COMMAND_ERROR_IS_FATAL ANY)")
    get_filename_component(folder_of_file ${file} DIRECTORY)
    get_filename_component(name ${file} NAME)
    install(FILES ${CMAKE_CURRENT_BINARY_DIR}/completions.${shell}
      DESTINATION ${CMAKE_INSTALL_DATADIR}/${folder_of_file} RENAME ${name})
  endwhile()

  install(DIRECTORY docs/man/ DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
  install(FILES README.md LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR})
  install(DIRECTORY docs/ DESTINATION ${CMAKE_INSTALL_DOCDIR}/docs
    FILES_MATCHING PATTERN "*.md" PATTERN "*.png" PATTERN man EXCLUDE)
endif()
