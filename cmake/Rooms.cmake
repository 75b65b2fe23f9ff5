# kavidex_room(NAME [DEPENDS ...] [FAST]): a static library of one room. Its portable sources lie in the
# room and its folders; those under posix/, odbc/ and win32/ belong to the builds that have them.
# The native build sees no Windows header, so a stray one ends the build. FAST: optimised for speed
# in a build for size as well.
function(kavidex_room name)
  cmake_parse_arguments(room "FAST" "" "DEPENDS" ${ARGN})
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  if(WIN32)
    list(FILTER sources EXCLUDE REGEX "/posix/")
  else()
    list(FILTER sources EXCLUDE REGEX "/win32/")
  endif()
  add_library(kavidex_${name} STATIC ${sources})
  target_include_directories(kavidex_${name} PUBLIC ${PROJECT_SOURCE_DIR})
  target_link_libraries(kavidex_${name} PUBLIC ${room_DEPENDS} PRIVATE kavidex_warnings)
  if(WIN32)
    target_compile_definitions(kavidex_${name} PRIVATE
      UNICODE _UNICODE NOMINMAX WIN32_LEAN_AND_MEAN _WIN32_WINNT=0x0601 STRICT)
  endif()
  if(room_FAST)
    target_compile_options(kavidex_${name} PRIVATE $<$<CONFIG:MinSizeRel>:-O2>)
  elseif(KAVIDEX_PRECOMPILE AND name STREQUAL platform)
    target_precompile_headers(kavidex_platform PRIVATE ${kavidexPrecompiled})
  elseif(KAVIDEX_PRECOMPILE)
    target_precompile_headers(kavidex_${name} REUSE_FROM kavidex_platform)
  endif()
endfunction()

# What most sources of the Windows builds include: read once, that halves the time to compile them.
# A source still includes what it uses, or the builds without this would not compile.
set(kavidexPrecompiled <algorithm> <cstdint> <functional> <map> <memory> <optional> <span> <string>
    <string_view> <utility> <vector> <windows.h> <ole2.h> <olectl.h> <commctrl.h>)
