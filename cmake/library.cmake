# libqv.so and libqv.a, from the same objects.

include( cmake/platform.cmake )

file( GLOB_RECURSE QV_SOURCES CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/source/qv/*.cc" )
file( GLOB_RECURSE QV_HEADERS CONFIGURE_DEPENDS RELATIVE "${CMAKE_SOURCE_DIR}/source" "${CMAKE_SOURCE_DIR}/source/qv/*.h" )

configure_file( cmake/qv_build.hh.in "${CMAKE_BINARY_DIR}/generated/qv_build.hh" @ONLY )

add_library( qv_objects OBJECT ${QV_SOURCES} )
target_include_directories( qv_objects PUBLIC "${CMAKE_SOURCE_DIR}/source" PRIVATE "${CMAKE_BINARY_DIR}/generated" )
target_link_libraries( qv_objects PRIVATE qv_warnings )
target_compile_options( qv_objects PRIVATE
    -fno-exceptions -fno-rtti -fno-threadsafe-statics -fvisibility=hidden -fno-semantic-interposition
    -fno-plt -fno-math-errno -Werror=missing-declarations -Werror=return-type )
set_target_properties( qv_objects PROPERTIES POSITION_INDEPENDENT_CODE ON )
if( QV_CHECKED )
    target_compile_definitions( qv_objects PUBLIC QV_CHECKED )
endif()
if( QV_LTO )
    target_compile_options( qv_objects PRIVATE -flto=auto -ffat-lto-objects )
endif()

find_package( Threads REQUIRED )

# Linked by the C driver: the library needs nothing of the C++ run-time library.
add_library( qv_shared SHARED $<TARGET_OBJECTS:qv_objects> )
set_target_properties( qv_shared PROPERTIES
    OUTPUT_NAME qv EXPORT_NAME qv VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR} LINKER_LANGUAGE C )
target_include_directories( qv_shared INTERFACE
    $<BUILD_INTERFACE:${CMAKE_SOURCE_DIR}/source> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}> )
target_link_options( qv_shared PRIVATE
    -Wl,-Bsymbolic-functions -Wl,--version-script=${CMAKE_SOURCE_DIR}/cmake/qv.map -Wl,-z,relro -Wl,-z,now )
if( QV_LTO )
    target_link_options( qv_shared PRIVATE -flto=auto -O2 )
endif()
if( NOT QV_SANITIZE )
    target_link_options( qv_shared PRIVATE -Wl,-z,defs )
endif()
target_link_libraries( qv_shared PRIVATE m ${CMAKE_DL_LIBS} Threads::Threads )
set_property( TARGET qv_shared APPEND PROPERTY LINK_DEPENDS "${CMAKE_SOURCE_DIR}/cmake/qv.map" )

add_library( qv_static STATIC $<TARGET_OBJECTS:qv_objects> )
set_target_properties( qv_static PROPERTIES OUTPUT_NAME qv EXPORT_NAME qv_static LINKER_LANGUAGE C )
target_include_directories( qv_static INTERFACE
    $<BUILD_INTERFACE:${CMAKE_SOURCE_DIR}/source> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}> )
target_link_libraries( qv_static PUBLIC m ${CMAKE_DL_LIBS} Threads::Threads )

add_library( qv::qv ALIAS qv_shared )
add_library( qv::qv_static ALIAS qv_static )
