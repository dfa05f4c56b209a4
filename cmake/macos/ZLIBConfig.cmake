# What tools/build-macos compiled, under the name that the sources link it by everywhere.
if(NOT TARGET ZLIB::ZLIB)
    add_library(ZLIB::ZLIB STATIC IMPORTED)
    set_target_properties(ZLIB::ZLIB PROPERTIES IMPORTED_LOCATION ${ORBEL_MACOS_TOOLS}/libz.a
                                                INTERFACE_INCLUDE_DIRECTORIES ${ORBEL_MACOS_ZLIB})
endif()
