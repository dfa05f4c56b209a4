# Compiles for macOS on Linux with the clang, libc++, headers and link stubs that come with zig. tools/build-macos
# makes the programs in ORBEL_MACOS_TOOLS and passes the variables below; configuring by hand is not meant.
#   ORBEL_MACOS_ARCH   arm64 or x86_64
#   ORBEL_MACOS_TOOLS  folder with c++, ar, ranlib, libzstd.a and libz.a for that architecture
#   ORBEL_MACOS_ZSTD, ORBEL_MACOS_ZLIB  folders with the sources of these libraries
set(CMAKE_SYSTEM_NAME Darwin)
set(CMAKE_SYSTEM_PROCESSOR ${ORBEL_MACOS_ARCH})
set(CMAKE_TRY_COMPILE_PLATFORM_VARIABLES ORBEL_MACOS_ARCH ORBEL_MACOS_TOOLS)

set(CMAKE_CXX_COMPILER ${ORBEL_MACOS_TOOLS}/c++)
set(CMAKE_AR ${ORBEL_MACOS_TOOLS}/ar CACHE FILEPATH "")
set(CMAKE_CXX_COMPILER_AR ${CMAKE_AR} CACHE FILEPATH "")
set(CMAKE_RANLIB ${ORBEL_MACOS_TOOLS}/ranlib CACHE FILEPATH "")
set(CMAKE_CXX_COMPILER_RANLIB ${CMAKE_RANLIB} CACHE FILEPATH "")
# CMake insists on one for macOS; nothing is installed from here, so it never runs.
set(CMAKE_INSTALL_NAME_TOOL ${CMAKE_COMMAND} CACHE FILEPATH "")

# The compiler is told the target in full; CMake's own guesses at a development kit would contradict it.
set(CMAKE_OSX_SYSROOT "" CACHE STRING "")
set(CMAKE_OSX_DEPLOYMENT_TARGET "" CACHE STRING "")
set(CMAKE_OSX_ARCHITECTURES "" CACHE STRING "")

# Nothing of this Linux is looked at but programs; what may be used of its headers is named in cmake/macos.
set(CMAKE_FIND_ROOT_PATH ${CMAKE_CURRENT_LIST_DIR}/macos)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(nlohmann_json_DIR ${CMAKE_CURRENT_LIST_DIR}/macos CACHE PATH "")
set(zstd_DIR ${CMAKE_CURRENT_LIST_DIR}/macos CACHE PATH "")
# Else CMake's own module would look for zlib.
set(CMAKE_FIND_PACKAGE_PREFER_CONFIG ON)
set(ZLIB_DIR ${CMAKE_CURRENT_LIST_DIR}/macos CACHE PATH "")
