# Helpers that keep the folder CMakeLists short and alike.

# Flags every target of ours is built with; not part of the installed interface.
add_library(zyn_build_flags INTERFACE)
if(CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang")
  target_compile_options(zyn_build_flags INTERFACE -Wall -Wextra -Wpedantic)
  if(ZYN_WARNINGS_AS_ERRORS)
    target_compile_options(zyn_build_flags INTERFACE -Werror)
  endif()
elseif(MSVC)
  target_compile_options(zyn_build_flags INTERFACE /W4 /utf-8)
  if(ZYN_WARNINGS_AS_ERRORS)
    target_compile_options(zyn_build_flags INTERFACE /WX)
  endif()
endif()

if(ZYN_SANITIZE)
  set(_zyn_san -fsanitize=address,undefined -fno-sanitize-recover=undefined
               -fno-omit-frame-pointer)
  add_compile_options(${_zyn_san})
  add_link_options(${_zyn_san})
endif()

# Fuzz builds instrument the whole library for coverage, so libFuzzer sees
# into the code under test and not only into the fuzz target.
if(ZYN_BUILD_FUZZERS)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()

# zyn_add_unit(<name> SOURCES <file>... [CALLS <unit>...] [LIBS <target>...])
#
# Declares the subsystem target zyn_<name> (an object library). CALLS names
# the units whose functions this one may use, as the architecture allows;
# every unit may use the platform layer and the base types. LIBS names
# outside libraries (global imported targets) the unit is built on; libzyn
# links them.
function(zyn_add_unit name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;CALLS;LIBS")
  set(target zyn_${name})
  add_library(${target} OBJECT ${arg_SOURCES})
  target_include_directories(${target} PUBLIC
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>)
  target_compile_features(${target} PUBLIC cxx_std_20)
  target_link_libraries(${target} PRIVATE zyn_build_flags)
  if(NOT name STREQUAL "platform")
    target_link_libraries(${target} PUBLIC zyn_platform)
    if(NOT name STREQUAL "base")
      target_link_libraries(${target} PUBLIC zyn_base)
    endif()
  endif()
  foreach(callee IN LISTS arg_CALLS)
    target_link_libraries(${target} PUBLIC zyn_${callee})
  endforeach()
  if(arg_LIBS)
    target_link_libraries(${target} PRIVATE ${arg_LIBS})
    set_property(GLOBAL APPEND PROPERTY ZYN_UNIT_LIBS ${arg_LIBS})
  endif()
  set_property(GLOBAL APPEND PROPERTY ZYN_UNIT_TARGETS ${target})
endfunction()

# zyn_add_test(<name> [LIBS <lib>...])
#
# Builds <name>_test.cpp of the current folder into a GoogleTest program,
# linked against the static library, and registers its tests with CTest.
function(zyn_add_test name)
  if(NOT ZYN_BUILD_TESTS)
    return()
  endif()
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "LIBS")
  get_filename_component(folder ${CMAKE_CURRENT_SOURCE_DIR} NAME)
  set(target test_${folder}_${name})
  add_executable(${target} ${name}_test.cpp)
  target_link_libraries(${target} PRIVATE zyn_static zyn_build_flags
    GTest::gtest GTest::gtest_main ${arg_LIBS})
  target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR})
  gtest_discover_tests(${target}
    WORKING_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}
    DISCOVERY_TIMEOUT 60)
endfunction()

# zyn_add_fuzzer(<name>)
#
# Builds fuzz/<name>.cpp into a libFuzzer target. CTest runs it once over its
# seed corpus fuzz/corpus/<name>/, so every seed stays a regression test.
function(zyn_add_fuzzer name)
  set(target fuzz_${name})
  add_executable(${target} ${name}.cpp)
  target_link_libraries(${target} PRIVATE zyn_static zyn_build_flags)
  target_compile_options(${target} PRIVATE -fsanitize=fuzzer)
  target_link_options(${target} PRIVATE -fsanitize=fuzzer)
  set(corpus ${CMAKE_CURRENT_SOURCE_DIR}/corpus/${name})
  if(EXISTS ${corpus})
    add_test(NAME fuzz_${name}_corpus COMMAND ${target} -runs=0 ${corpus})
  endif()
endfunction()

# zyn_add_benchmark(<name> [LIBS <lib>...])
#
# Builds bench/<name>.cpp against Google Benchmark. Peer libraries used only
# for comparison are linked here and never into the library.
function(zyn_add_benchmark name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "LIBS")
  set(target bench_${name})
  add_executable(${target} ${name}.cpp)
  target_link_libraries(${target} PRIVATE zyn_static zyn_build_flags
    benchmark::benchmark ${arg_LIBS})
endfunction()

# zyn_add_library([LIBS <lib>...])
#
# Builds libzyn.so and libzyn.a from the objects of every unit and the
# package frame. LIBS are the outside libraries the units use: the shared
# library links them privately, the static one hands them to its users.
function(zyn_add_library)
  cmake_parse_arguments(PARSE_ARGV 0 arg "" "" "LIBS")
  get_property(units GLOBAL PROPERTY ZYN_UNIT_TARGETS)
  set(objects)
  foreach(unit IN LISTS units)
    list(APPEND objects $<TARGET_OBJECTS:${unit}>)
  endforeach()
  set(frame ${PROJECT_SOURCE_DIR}/zyn/package.cpp)

  add_library(zyn SHARED ${frame} ${objects})
  add_library(zyn_static STATIC ${frame} ${objects})
  set_target_properties(zyn PROPERTIES
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR}
    EXPORT_NAME zyn
    WINDOWS_EXPORT_ALL_SYMBOLS ON)
  set_target_properties(zyn_static PROPERTIES EXPORT_NAME zyn_static)
  if(WIN32)
    set_target_properties(zyn_static PROPERTIES OUTPUT_NAME zyn_static)
  else()
    set_target_properties(zyn_static PROPERTIES OUTPUT_NAME zyn)
  endif()
  foreach(lib zyn zyn_static)
    target_include_directories(${lib} PUBLIC
      $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>
      $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
    target_compile_features(${lib} PUBLIC cxx_std_20)
    target_link_libraries(${lib} PRIVATE $<BUILD_INTERFACE:zyn_build_flags>)
  endforeach()
  target_link_libraries(zyn PRIVATE ${arg_LIBS})
  target_link_libraries(zyn_static PUBLIC ${arg_LIBS})
  # Outside libraries of the units: private to the shared library; the static
  # one passes them on to whoever links it.
  get_property(unit_libs GLOBAL PROPERTY ZYN_UNIT_LIBS)
  if(unit_libs)
    target_link_libraries(zyn PRIVATE ${unit_libs})
    target_link_libraries(zyn_static PRIVATE ${unit_libs})
  endif()
  add_library(Zyn::zyn ALIAS zyn)
  add_library(Zyn::zyn_static ALIAS zyn_static)
endfunction()
