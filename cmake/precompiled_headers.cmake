# Half of the time of a build from nothing would go into reading the headers of the toolkit and of the test framework
# again for every file. No file relies on them standing in front: ./test lint compiles without.

# carvello_headers(GROUP LIBRARY|PROGRAM LIBRARIES LIBRARY… HEADERS HEADER…): what carvello_precompile(TARGET GROUP) puts
# in front of the sources of libraries, or of programs, in this folder and below. They are made once a group, with no
# definitions but those that all targets of the group have.
function(carvello_headers group kind)
  cmake_parse_arguments(ARG "" "" "LIBRARIES;HEADERS" ${ARGN})
  set(source ${CMAKE_CURRENT_BINARY_DIR}/${group}_headers.cpp)
  file(CONFIGURE OUTPUT ${source} CONTENT "int main() {}\n")
  if(kind STREQUAL "LIBRARY")
    add_library(${group}_headers STATIC ${source})
  else()
    add_executable(${group}_headers ${source})
  endif()
  target_link_libraries(${group}_headers PRIVATE carvello_warnings ${ARG_LIBRARIES})
  target_precompile_headers(${group}_headers PRIVATE ${ARG_HEADERS})
endfunction()

function(carvello_precompile target group)
  target_precompile_headers(${target} REUSE_FROM ${group}_headers)
endfunction()
