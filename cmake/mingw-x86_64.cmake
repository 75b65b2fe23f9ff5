# 64-bit Windows.
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(kavidexTriplet x86_64-w64-mingw32)
set(kavidexBits 64)
include(${CMAKE_CURRENT_LIST_DIR}/mingw.cmake)
