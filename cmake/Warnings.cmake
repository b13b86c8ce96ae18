# The warnings that all of our own code is compiled with; the presets make them errors.
add_library(kelwhich_warnings INTERFACE)
target_compile_options(
  kelwhich_warnings
  INTERFACE -Wall
            -Wextra
            -Wpedantic
            -Wconversion
            -Wsign-conversion
            -Wshadow
            -Wold-style-cast
            -Wnon-virtual-dtor
            -Woverloaded-virtual
            -Wcast-align)
