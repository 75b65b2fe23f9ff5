# Warnings are errors, the same on every compiler.
add_library(kavidex_warnings INTERFACE)
target_compile_options(kavidex_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Werror -Wshadow
  -Werror=suggest-override -Werror=overloaded-virtual)
if(NOT WIN32)
  # COM interfaces have no virtual destructor: their objects count references.
  target_compile_options(kavidex_warnings INTERFACE -Wnon-virtual-dtor)
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # gcc 12 sees an overlap in every std::string operator+ with a literal in front.
  target_compile_options(kavidex_warnings INTERFACE -Wno-restrict)
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
  # clang knows the check under another name.
  target_compile_options(kavidex_warnings INTERFACE -Wno-unknown-warning-option)
endif()
