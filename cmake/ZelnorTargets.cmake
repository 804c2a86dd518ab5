# What every target of ours has in common, in one place.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_AUTOMOC OFF)

# -O3 makes coroutines a third slower to compile and nothing of ours measurably faster.
string(REPLACE "-O3" "-O2" CMAKE_CXX_FLAGS_RELEASE "${CMAKE_CXX_FLAGS_RELEASE}")

# "address" (with undefined behaviour) or "thread"; set by the presets of the same purpose.
set(ZELNOR_SANITIZER "" CACHE STRING "Sanitizer to build everything with: address, thread or none")

add_library(zelnor_options INTERFACE)
target_compile_options(zelnor_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor -Wold-style-cast -Woverloaded-virtual
  -Werror)
# Everything of ours is included by its folder: "store/FileRecord.h".
target_include_directories(zelnor_options INTERFACE ${CMAKE_SOURCE_DIR}/src)
target_compile_definitions(zelnor_options INTERFACE
  # Asio decides by the headers before it whether there is aligned_alloc, so that two files could disagree about how
  # memory is freed.
  ASIO_DISABLE_STD_ALIGNED_ALLOC
  ASIO_NO_DEPRECATED ASIO_SEPARATE_COMPILATION ASIO_STANDALONE QT_NO_KEYWORDS QT_NO_CAST_FROM_ASCII)

if(ZELNOR_SANITIZER STREQUAL "address")
  # Instrumented, the standard library's own regular expressions look uninitialized to GCC.
  target_compile_options(zelnor_options INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer -Wno-maybe-uninitialized)
  target_link_options(zelnor_options INTERFACE -fsanitize=address,undefined)
elseif(ZELNOR_SANITIZER STREQUAL "thread")
  # GCC warns that it does not instrument stand-alone fences; Asio uses one, beside atomics that are instrumented.
  target_compile_options(zelnor_options INTERFACE -fsanitize=thread -Wno-tsan)
  target_link_options(zelnor_options INTERFACE -fsanitize=thread)
elseif(ZELNOR_SANITIZER)
  message(FATAL_ERROR "ZELNOR_SANITIZER must be address, thread or empty, not ${ZELNOR_SANITIZER}")
endif()

# zelnor_library(<folder name> SOURCES … DEPENDS …): one folder of src/, one static library.
function(zelnor_library name)
  cmake_parse_arguments(ARG "QT" "" "SOURCES;DEPENDS;PRIVATE_DEPENDS" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  target_link_libraries(${name} PUBLIC zelnor_options ${ARG_DEPENDS} PRIVATE ${ARG_PRIVATE_DEPENDS})
  set_target_properties(${name} PROPERTIES AUTOMOC ${ARG_QT})
endfunction()

# zelnor_program(<name> SOURCES … DEPENDS …)
function(zelnor_program name)
  cmake_parse_arguments(ARG "QT" "" "SOURCES;DEPENDS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE zelnor_options ${ARG_DEPENDS})
  set_target_properties(${name} PROPERTIES AUTOMOC ${ARG_QT} RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
endfunction()

# zelnor_tests(<folder> [FOREIGN_THREADS] [SERIAL] SOURCES … DEPENDS …): the test program of one folder, on the libraries that ship.
# FOREIGN_THREADS: libraries from outside run threads of their own in it. SERIAL: nothing else runs beside it.
function(zelnor_tests folder)
  cmake_parse_arguments(ARG "QT;FOREIGN_THREADS;SERIAL" "" "SOURCES;DEPENDS" ${ARGN})
  set(program test_${folder})
  add_executable(${program} ${ARG_SOURCES})
  target_include_directories(${program} PRIVATE ${CMAKE_SOURCE_DIR})
  target_link_libraries(${program} PRIVATE zelnor_options ${ARG_DEPENDS} zelnor_test_support GTest::gtest_main GTest::gmock)
  set_target_properties(${program} PROPERTIES AUTOMOC ${ARG_QT})
  set(environment "")
  if(ARG_FOREIGN_THREADS)
    set(environment ENVIRONMENT "TSAN_OPTIONS=suppressions=${CMAKE_SOURCE_DIR}/tests/support/tsan-suppressions.txt")
  endif()
  set(serial "")
  if(ARG_SERIAL)
    set(serial RUN_SERIAL TRUE)
  endif()
  gtest_discover_tests(${program} DISCOVERY_MODE PRE_TEST PROPERTIES TIMEOUT 300 ${environment} ${serial})
endfunction()
