# Windows from Debian's cross compilers, with the posix thread model (std::thread, std::mutex), for the
# `kavidexTriplet` and `kavidexBits` of the toolchain file that includes this.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_C_COMPILER ${kavidexTriplet}-gcc-posix)
set(CMAKE_CXX_COMPILER ${kavidexTriplet}-g++-posix)
set(CMAKE_RC_COMPILER ${kavidexTriplet}-windres)

get_filename_component(kavidexRoot ${CMAKE_CURRENT_LIST_DIR}/.. ABSOLUTE)
set(KAVIDEX_BITS ${kavidexBits})
set(KAVIDEX_DEPS ${kavidexRoot}/build/deps/win${kavidexBits})
set(KAVIDEX_MINGW /usr/${kavidexTriplet})
set(CMAKE_FIND_ROOT_PATH ${KAVIDEX_MINGW} ${KAVIDEX_DEPS})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# No runtime DLL beside ours.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-static")
set(CMAKE_CROSSCOMPILING_EMULATOR ${kavidexRoot}/tools/wine-run.sh)
