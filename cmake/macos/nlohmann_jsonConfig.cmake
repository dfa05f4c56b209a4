# Debian's copy of the header-only library, reached through a folder that holds nothing else: /usr/include as a whole
# would put the headers of Linux before those of macOS.
set(orbel_json_include ${CMAKE_BINARY_DIR}/include)
file(MAKE_DIRECTORY ${orbel_json_include})
file(CREATE_LINK /usr/include/nlohmann ${orbel_json_include}/nlohmann SYMBOLIC)
if(NOT TARGET nlohmann_json::nlohmann_json)
    add_library(nlohmann_json::nlohmann_json INTERFACE IMPORTED)
    set_target_properties(nlohmann_json::nlohmann_json PROPERTIES INTERFACE_INCLUDE_DIRECTORIES ${orbel_json_include})
endif()
