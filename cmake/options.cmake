# What a person may set, and the flags that follow from it.

set( QV_PRODUCT_NAME "qv" CACHE STRING "Product that the library is built into: lower-case letters and digits" )
set( QV_PRODUCT_FRIENDLY_NAME "QV" CACHE STRING "The product's name for people" )
set( QV_PRODUCT_VENDOR "Veltrano" CACHE STRING "The product's vendor" )
set( QV_PRODUCT_COPYRIGHT "Copyright (C) 2026 the qv authors" CACHE STRING "The product's copyright line" )
set( QV_VARIANT "" CACHE STRING "RELEASE, DEBUG, PROFILE or CHECK; empty: from the build type" )
option( QV_CHECKED "Check expensive invariants" OFF )
option( QV_M32 "Build for 32-bit x86" OFF )
set( QV_SANITIZE "" CACHE STRING "Sanitizers, for example address,undefined" )
option( QV_LTO "Optimize across source files" OFF )
option( QV_FUZZ "Build the fuzzer" OFF )
option( QV_BUILD_TOOL "Build the qv command" ON )
option( QV_BUILD_EXAMPLES "Build the examples" ON )
option( QV_BUILD_TESTS "Build the tests" ON )
set( QV_GOOGLETEST /usr/src/googletest CACHE PATH "Sources of GoogleTest, which the tests are built with" )

if( NOT DEFINED CMAKE_BUILD_TYPE )
    set( CMAKE_BUILD_TYPE Release CACHE STRING "Build type" FORCE )
endif()
set( CMAKE_CXX_FLAGS_RELEASE "-O2" )
set( CMAKE_C_FLAGS_RELEASE "-O2" )

set( CMAKE_CXX_STANDARD 20 )
set( CMAKE_CXX_STANDARD_REQUIRED ON )
set( CMAKE_CXX_EXTENSIONS OFF )
set( CMAKE_C_STANDARD 99 )
set( CMAKE_C_EXTENSIONS OFF )
set( CMAKE_EXPORT_COMPILE_COMMANDS ON )

add_library( qv_warnings INTERFACE )
target_compile_options( qv_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wvla -Wcast-qual -Wformat=2 -Wundef -Wno-missing-field-initializers )

# Flags of the whole tree: source paths are mapped, so that reports show source/qv/...
add_compile_options( "-ffile-prefix-map=${CMAKE_SOURCE_DIR}/=" )
add_compile_definitions( _GNU_SOURCE _FILE_OFFSET_BITS=64 _TIME_BITS=64 )

if( QV_M32 )
    add_compile_options( -m32 -msse2 -mfpmath=sse )
    set( CMAKE_SIZEOF_VOID_P 4 ) # what the installed package says of itself
    add_link_options( -m32 )
endif()
if( QV_SANITIZE )
    add_compile_options( -fsanitize=${QV_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer )
    add_link_options( -fsanitize=${QV_SANITIZE} )
endif()
