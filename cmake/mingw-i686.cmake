# 32-bit Windows.
set(CMAKE_SYSTEM_PROCESSOR i686)
set(kavidexTriplet i686-w64-mingw32)
set(kavidexBits 32)
include(${CMAKE_CURRENT_LIST_DIR}/mingw.cmake)
