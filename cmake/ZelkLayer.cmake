# SPDX-License-Identifier: MIT

# zelk_layer(NAME LINKS <layers this one may include> LIBRARIES <third-party, private>)
# Makes a static library of all sources of the current folder. Its name says its place:
# platform/uikit is zelk_platform_uikit.
function(zelk_layer name)
  cmake_parse_arguments(LAYER "" "" "LINKS;LIBRARIES" ${ARGN})
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*.cpp")
  file(GLOB_RECURSE headers CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*.h")
  list(FILTER headers EXCLUDE REGEX "_p\\.h$")
  if(sources)
    add_library(${name} STATIC ${sources})
    target_include_directories(${name} PUBLIC "$<BUILD_INTERFACE:${CMAKE_SOURCE_DIR}>")
    target_link_libraries(${name} PUBLIC ${LAYER_LINKS} PRIVATE ${LAYER_LIBRARIES})
    zelk_precompile(${name})
  else()
    add_library(${name} INTERFACE)
    target_include_directories(${name} INTERFACE "$<BUILD_INTERFACE:${CMAKE_SOURCE_DIR}>")
    target_link_libraries(${name} INTERFACE ${LAYER_LINKS})
  endif()
  set_property(GLOBAL APPEND PROPERTY ZELK_LAYERS ${name})
  if(ZELK_BUILD_TESTS)
    zelk_check_headers(${name} ${headers})
  endif()
endfunction()

# The standard library is parsed once: every target takes the precompiled header of the first, programs perhaps one that
# has more: zelk_precompile(NAME [FROM TARGET]).
function(zelk_precompile name)
  cmake_parse_arguments(PRECOMPILE "" "FROM" "" ${ARGN})
  if(NOT PRECOMPILE_FROM)
    set(PRECOMPILE_FROM zelk_standard_headers)
  endif()
  if(TARGET ${PRECOMPILE_FROM})
    target_precompile_headers(${name} REUSE_FROM ${PRECOMPILE_FROM})
    # The header was compiled with -fPIC, and the compiler refuses it to sources that are not.
    get_target_property(type ${name} TYPE)
    if(type STREQUAL "EXECUTABLE")
      set_target_properties(${name} PROPERTIES POSITION_INDEPENDENT_CODE OFF)
      target_compile_options(${name} PRIVATE -fPIC)
    endif()
  endif()
endfunction()

# zelk_precompiled(NAME HEADERS <more than the standard ones> LINKS <targets>): a header to take FROM.
set(zelk_standard_header_list <algorithm> <array> <chrono> <concepts> <cstdint> <expected> <functional> <map> <memory> <optional>
  <span> <string> <string_view> <tuple> <type_traits> <unordered_map> <utility> <variant> <vector>)
function(zelk_precompiled name)
  cmake_parse_arguments(PRECOMPILED "" "" "HEADERS;LINKS" ${ARGN})
  add_library(${name} STATIC "${CMAKE_SOURCE_DIR}/cmake/standard_headers.cpp")
  target_include_directories(${name} PRIVATE "${CMAKE_SOURCE_DIR}")
  target_link_libraries(${name} PRIVATE ${PRECOMPILED_LINKS})
  target_precompile_headers(${name} PRIVATE ${zelk_standard_header_list} ${PRECOMPILED_HEADERS})
endfunction()

# Proves that each public header compiles alone: one source a header. Those that another file of the layer includes
# before all else are proved by it: a source, or a header that is proved itself. That the precompiled header hides no
# missing include is script/check-includes' to see.
function(zelk_check_headers name)
  set(included_first)
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*.cpp")
  foreach(file IN LISTS sources ARGN)
    file(STRINGS "${file}" first LIMIT_COUNT 1 REGEX "^ *# *(include|define|if)")
    if(first MATCHES "^#include \"(.*)\"")
      list(APPEND included_first "${CMAKE_MATCH_1}")
    endif()
  endforeach()
  set(units)
  foreach(header IN LISTS ARGN)
    file(RELATIVE_PATH relative "${CMAKE_SOURCE_DIR}" "${header}")
    if(relative IN_LIST included_first)
      continue()
    endif()
    string(REPLACE "/" "_" unit "${relative}")
    set(unit "${CMAKE_BINARY_DIR}/headers/${unit}.cpp")
    set(text "#include \"${relative}\"\n")
    file(CONFIGURE OUTPUT "${unit}" CONTENT "${text}" @ONLY)
    list(APPEND units "${unit}")
  endforeach()
  if(units)
    add_library(${name}_headers OBJECT ${units})
    target_link_libraries(${name}_headers PRIVATE ${name})
    zelk_precompile(${name}_headers)
  endif()
endfunction()

# zelk_compile_together(TARGET SUFFIX GROUPS...): the sources of a group are read by the compiler as one, which takes half
# the time: what they all begin with is read once. A group is names in one text, which SUFFIX makes paths of; its sources
# may not have different things of one name. Sources in no group are compiled one by one.
function(zelk_compile_together target suffix)
  set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_MODE GROUP)
  foreach(group IN LISTS ARGN)
    string(REPLACE " " ";" names "${group}")
    list(TRANSFORM names APPEND "${suffix}" OUTPUT_VARIABLE sources)
    list(GET names 0 first)
    get_filename_component(first "${first}" NAME)
    set_source_files_properties(${sources} PROPERTIES UNITY_GROUP "${first}")
  endforeach()
endfunction()

# zelk_test(FOLDER [SERIAL] [VIEWS] LINKS <targets> [TOGETHER <groups>]): one test program of all sources of tests/FOLDER.
# Tests run in a temporary home on the off-screen window system, without network. SERIAL: one of them at a time, as they
# share what the program keeps in its home. VIEWS: most of its sources describe views. TOGETHER: which sources are compiled
# as one, by what their names have before Tests.cpp.
function(zelk_test folder)
  cmake_parse_arguments(TEST "SERIAL;VIEWS" "" "LINKS;LIBRARIES;TOGETHER" ${ARGN})
  string(REPLACE "/" "_" name "tests_${folder}")
  file(GLOB sources CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/tests/${folder}/*.cpp")
  if(NOT sources)
    return()
  endif()
  add_executable(${name} ${sources})
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/tests")
  target_compile_definitions(${name} PRIVATE ZELK_SOURCE_DIR="${CMAKE_SOURCE_DIR}" ZELK_BINARY_DIR="${CMAKE_BINARY_DIR}")
  target_link_libraries(${name} PRIVATE ${TEST_LINKS} ${TEST_LIBRARIES} zelk_tests_support GTest::gtest)
  if(TEST_VIEWS)
    zelk_precompile(${name} FROM zelk_view_test_headers)
  else()
    zelk_precompile(${name} FROM zelk_test_headers)
  endif()
  if(TEST_TOGETHER)
    string(REGEX REPLACE "([^ ;]+)" "${CMAKE_SOURCE_DIR}/tests/${folder}/\\1" groups "${TEST_TOGETHER}")
    zelk_compile_together(${name} "Tests.cpp" ${groups})
  endif()
  set(locks)
  if(TEST_SERIAL)
    set(locks RESOURCE_LOCK ${name})
  endif()
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST TEST_PREFIX "${folder}: "
    PROPERTIES ENVIRONMENT "QT_QPA_PLATFORM=offscreen;HOME=${CMAKE_BINARY_DIR}/tests/home;XDG_RUNTIME_DIR=${CMAKE_BINARY_DIR}/tests/home;DBUS_SESSION_BUS_ADDRESS=disabled:;LC_ALL=C.UTF-8;LSAN_OPTIONS=suppressions=${CMAKE_SOURCE_DIR}/cmake/lsan.supp:print_suppressions=0;TSAN_OPTIONS=suppressions=${CMAKE_SOURCE_DIR}/cmake/tsan.supp"
               TIMEOUT 120 ${locks})
endfunction()

# Puts a program's manifest where Bundle::main() looks for it: share/PROGRAM/Info.plist beside bin/.
function(zelk_manifest program manifest)
  set(place "${CMAKE_BINARY_DIR}/share/${program}/Info.plist")
  add_custom_command(OUTPUT "${place}" COMMAND "${CMAKE_COMMAND}" -E copy "${manifest}" "${place}" DEPENDS "${manifest}")
  add_custom_target(${program}-manifest DEPENDS "${place}")
  add_dependencies(${program} ${program}-manifest)
  install(FILES "${manifest}" DESTINATION share/${program})
endfunction()
