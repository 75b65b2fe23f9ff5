# Warnings are errors, the same on every compiler.
add_library(kavidex_warnings INTERFACE)
target_compile_options(kavidex_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Werror -Wshadow -Wnon-virtual-dtor
  -Werror=suggest-override -Werror=overloaded-virtual)
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
  # clang knows the check under another name.
  target_compile_options(kavidex_warnings INTERFACE -Wno-unknown-warning-option)
endif()
