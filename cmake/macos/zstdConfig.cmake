# What tools/build-macos compiled, under the name that the sources link it by everywhere.
if(NOT TARGET zstd::libzstd_shared)
    add_library(zstd::libzstd_shared STATIC IMPORTED)
    set_target_properties(zstd::libzstd_shared PROPERTIES IMPORTED_LOCATION ${ORBEL_MACOS_TOOLS}/libzstd.a
                                                          INTERFACE_INCLUDE_DIRECTORIES ${ORBEL_MACOS_ZSTD}/lib)
endif()
