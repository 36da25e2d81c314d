# Build options and the compile settings every target of this project shares.

option(ZYL_BUILD_APPS "Build the host applications (zylview, zylsample)" ON)
option(ZYL_BUILD_TESTS "Build the tests" ON)
option(ZYL_BUILD_BENCHMARKS "Build the benchmarks" OFF)
option(ZYL_WERROR "Treat warnings in our own code as errors" ON)
set(ZYL_SANITIZE "" CACHE STRING "Sanitizers for our own code, e.g. address,undefined")

if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
  set(CMAKE_BUILD_TYPE RelWithDebInfo CACHE STRING "Build type" FORCE)
endif()

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_VISIBILITY_PRESET hidden)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/lib")
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")

find_program(ZYL_CCACHE ccache)
mark_as_advanced(ZYL_CCACHE)
if(ZYL_CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER "${ZYL_CCACHE}")
  set(CMAKE_C_COMPILER_LAUNCHER "${ZYL_CCACHE}")
endif()

# Our warnings and sanitizers, for targets whose sources we wrote (not for generated wrappers).
add_library(zyl_settings INTERFACE)
target_compile_options(zyl_settings INTERFACE -Wall -Wextra
  $<$<BOOL:${ZYL_WERROR}>:-Werror>)
if(ZYL_SANITIZE)
  target_compile_options(zyl_settings INTERFACE -fsanitize=${ZYL_SANITIZE} -fno-omit-frame-pointer)
  target_link_options(zyl_settings INTERFACE -fsanitize=${ZYL_SANITIZE})
endif()
