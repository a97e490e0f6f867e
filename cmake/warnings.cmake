# Targets of ours link to carvello_warnings; what comes from the distribution does not. A compiler that nobody has tried
# may have warnings of its own, so that they are errors can be switched off.
option(CARVELLO_WERROR "Make warnings errors" ON)
add_library(carvello_warnings INTERFACE)
target_compile_options(carvello_warnings INTERFACE
  -Wall -Wextra -Wconversion -Wsign-conversion -Wshadow -Wnon-virtual-dtor -Wold-style-cast -Woverloaded-virtual
  -Wformat=2 $<$<BOOL:${CARVELLO_WERROR}>:-Werror>)

# What later toolkits call deprecated is all that the oldest one has. It holds for a folder, so that its precompiled
# headers know of it too.
macro(carvello_heed_oldest_toolkit)
  if(Qt6_VERSION VERSION_GREATER_EQUAL 6.5)
    add_compile_definitions(QT_WARN_DEPRECATED_UP_TO=0x060400)
  endif()
endmacro()
