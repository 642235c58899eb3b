# What a host builds against: libraries, public headers, a pkg-config file and a CMake package.

include( CMakePackageConfigHelpers )

install( TARGETS qv_shared EXPORT qv-targets LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" )
install( TARGETS qv_static EXPORT qv-targets ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}" )
install( DIRECTORY "${CMAKE_SOURCE_DIR}/source/qv" DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}"
         FILES_MATCHING PATTERN "*.h" PATTERN gen EXCLUDE )

set( QV_CMAKE_DIR "${CMAKE_INSTALL_LIBDIR}/cmake/qv" )
install( EXPORT qv-targets NAMESPACE qv:: DESTINATION "${QV_CMAKE_DIR}" )
configure_package_config_file( "${CMAKE_SOURCE_DIR}/cmake/qv-config.cmake.in" "${CMAKE_BINARY_DIR}/qv-config.cmake"
                               INSTALL_DESTINATION "${QV_CMAKE_DIR}" )
write_basic_package_version_file( "${CMAKE_BINARY_DIR}/qv-config-version.cmake" COMPATIBILITY SameMinorVersion )
string( TOUPPER "JN_${QV_PRODUCT_NAME}_BIN_PATH" QV_BIN_PATH_VARIABLE )
configure_file( cmake/qv_add_module.cmake.in "${CMAKE_BINARY_DIR}/qv_add_module.cmake" @ONLY )
install( FILES "${CMAKE_BINARY_DIR}/qv-config.cmake" "${CMAKE_BINARY_DIR}/qv-config-version.cmake"
               "${CMAKE_BINARY_DIR}/qv_add_module.cmake"
         DESTINATION "${QV_CMAKE_DIR}" )

# The file finds its prefix from its own place, which may be a folder deeper than lib on some systems.
file( RELATIVE_PATH QV_PC_PREFIX "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/" )
configure_file( cmake/libqv.pc.in "${CMAKE_BINARY_DIR}/libqv.pc" @ONLY )
install( FILES "${CMAKE_BINARY_DIR}/libqv.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig" )

if( QV_BUILD_TOOL )
    set( QV_GENERATED "${CMAKE_BINARY_DIR}/source/tool/generated" )
    install( FILES "${QV_GENERATED}/qv.1" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1" )
    install( FILES "${QV_GENERATED}/qv" DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions" )
    install( FILES "${QV_GENERATED}/_qv" DESTINATION "${CMAKE_INSTALL_DATADIR}/zsh/site-functions" )
    install( FILES "${QV_GENERATED}/qv.fish" DESTINATION "${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d" )
endif()
