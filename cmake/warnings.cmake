# Warnings are errors. Targets of ours link to carvello_warnings; what comes from the distribution does not.
add_library(carvello_warnings INTERFACE)
target_compile_options(carvello_warnings INTERFACE
  -Wall -Wextra -Werror -Wconversion -Wsign-conversion -Wshadow -Wnon-virtual-dtor -Wold-style-cast
  -Woverloaded-virtual -Wformat=2)
