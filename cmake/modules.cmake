# Loadable modules with a fixed export list, the same on both systems.

# The export list of a .def file: names into OUT_NAMES, "ordinal=name" pairs into OUT_ORDINALS.
# Exports that open windows, as their names say, exist on Windows only and are left out.
function(kf_read_exports def out_names out_ordinals)
  file(STRINGS ${def} lines)
  set(names)
  set(ordinals)
  foreach(line IN LISTS lines)
    if(line MATCHES "^(LIBRARY|EXPORTS)|Show|WinHelp")
      continue()
    endif()
    if(line MATCHES "^([A-Za-z_0-9]+)")
      list(APPEND names ${CMAKE_MATCH_1})
    endif()
    if(line MATCHES "^([A-Za-z_0-9]+) @([0-9]+)")
      list(APPEND ordinals "${CMAKE_MATCH_2}=${CMAKE_MATCH_1}")
    endif()
  endforeach()
  set(${out_names} ${names} PARENT_SCOPE)
  set(${out_ordinals} ${ordinals} PARENT_SCOPE)
endfunction()

# kf_module(TARGET FILE_NAME DEF_FILE OUTPUT_FOLDER SOURCES...)
# Natively the exports become a version script, an ordinal an alias "ordinal.N" of its function
# (platform/posix looks it up), and DllMain, which the module search calls, stays visible.
function(kf_module target file_name def folder)
  add_library(${target} MODULE ${ARGN})
  get_filename_component(stem ${file_name} NAME_WLE)
  get_filename_component(suffix ${file_name} LAST_EXT)
  set_target_properties(${target} PROPERTIES
    PREFIX "" OUTPUT_NAME ${stem} SUFFIX ${suffix}
    LIBRARY_OUTPUT_DIRECTORY ${folder} RUNTIME_OUTPUT_DIRECTORY ${folder})
  target_link_libraries(${target} PRIVATE kf_platform kf_warnings)
  set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${def})
  if(WIN32)
    target_sources(${target} PRIVATE ${def})
  else()
    kf_read_exports(${def} names ordinals)
    list(APPEND names DllMain ordinal.* resource.*)
    list(JOIN names ";\n    " visible)
    set(script ${CMAKE_CURRENT_BINARY_DIR}/${target}.exports)
    file(CONFIGURE OUTPUT ${script} CONTENT
         "{\n  global:\n    @visible@;\n  local:\n    *;\n};\n" @ONLY)
    target_link_options(${target} PRIVATE -Wl,--version-script,${script})
    set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${script})
    foreach(pair IN LISTS ordinals)
      string(REPLACE "=" ";" pair ${pair})
      list(GET pair 0 ordinal)
      list(GET pair 1 name)
      target_link_options(${target} PRIVATE -Wl,--defsym,ordinal.${ordinal}=${name})
    endforeach()
  endif()
endfunction()

# kf_delay_imports(TARGET COMPANION...): binds the companions' calls lazily. Natively the
# declarations do it themselves (platform/companion_call.h).
function(kf_delay_imports target)
  if(NOT WIN32)
    return()
  endif()
  foreach(companion IN LISTS ARGN)
    set(def ${PROJECT_SOURCE_DIR}/companions/${companion}/${companion}.def)
    set(library ${PROJECT_BINARY_DIR}/delay/lib${companion}.a)
    if(NOT TARGET delay_${companion})
      file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/delay)
      add_custom_command(OUTPUT ${library}
        COMMAND ${CMAKE_DLLTOOL} --input-def ${def} --output-delaylib lib${companion}.a
        WORKING_DIRECTORY ${PROJECT_BINARY_DIR}/delay DEPENDS ${def} VERBATIM)
      add_custom_target(delay_${companion} DEPENDS ${library})
    endif()
    add_dependencies(${target} delay_${companion})
    target_link_libraries(${target} PRIVATE ${library})
    set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${library})
  endforeach()
  target_sources(${target} PRIVATE
    ${PROJECT_SOURCE_DIR}/platform/windows/delay_load_helper.cpp
    ${PROJECT_SOURCE_DIR}/platform/windows/delay_directory_end.cpp)
  add_custom_command(TARGET ${target} POST_BUILD
    COMMAND ${Python3_EXECUTABLE} ${PROJECT_SOURCE_DIR}/cmake/set_delay_directory.py
            $<TARGET_FILE:${target}> VERBATIM)
endfunction()

# kf_test(TARGET SOURCES...): a GoogleTest program and its entries in ctest, named after the build.
# Where starting and ending a process costs more than its tests, each program is one entry.
get_filename_component(KF_BUILD_NAME ${PROJECT_BINARY_DIR} NAME)
# The leak checker of g++ 12 guesses where the C library put a thread's variables of a library that
# was loaded later, and ends the program when it guesses wrong; without the guess it looks at the rest.
set(KF_TEST_ENVIRONMENT)
if(KF_SANITIZERS)
  set(KF_TEST_ENVIRONMENT ASAN_OPTIONS=intercept_tls_get_addr=0)
endif()
function(kf_test target)
  kf_test_program(${target} ${ARGN})
  target_link_libraries(${target} PRIVATE GTest::gtest_main)
  if(KF_TEST_BY_PROGRAM)
    add_test(NAME ${KF_BUILD_NAME}:${target} COMMAND ${target} --gtest_brief=1)
    set_tests_properties(${KF_BUILD_NAME}:${target} PROPERTIES TIMEOUT 900 ENVIRONMENT "${KF_TEST_ENVIRONMENT}")
  else()
    gtest_discover_tests(${target} TEST_PREFIX ${KF_BUILD_NAME}: NO_PRETTY_VALUES DISCOVERY_TIMEOUT 60
                         PROPERTIES TIMEOUT 300)
  endif()
endfunction()

# A test runs once where it is compiled, so it is compiled quickly. Of the sanitizers its own code has
# that of addresses only: the others look at what is tested.
add_library(kf_quick INTERFACE)
target_compile_options(kf_quick INTERFACE $<$<CONFIG:Release>:-O1>)
if(KF_FUZZ)
  target_compile_options(kf_quick INTERFACE -O0 -fno-sanitize=undefined,fuzzer-no-link)
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
  # These warnings name correct copies of strings where <string> comes precompiled.
  target_compile_options(kf_quick INTERFACE -Wno-array-bounds -Wno-stringop-overflow)
endif()

# What nearly every test includes, compiled once. Its flags are those of a program.
file(WRITE ${PROJECT_BINARY_DIR}/test_headers.cpp "int main() {}\n")
add_executable(kf_test_headers EXCLUDE_FROM_ALL ${PROJECT_BINARY_DIR}/test_headers.cpp)
target_link_libraries(kf_test_headers PRIVATE kf_platform kf_warnings kf_quick GTest::gmock)
target_precompile_headers(kf_test_headers PRIVATE <gmock/gmock.h> <gtest/gtest.h>)

function(kf_test_program target)
  add_executable(${target} ${ARGN})
  target_precompile_headers(${target} REUSE_FROM kf_test_headers)
  set_target_properties(${target} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/tests/${target})
  target_link_libraries(${target} PRIVATE kf_platform kf_warnings kf_quick GTest::gmock)
endfunction()

# kf_window_test_at(TARGET DPI FILTER): some tests of a window program again, at other dots per inch.
function(kf_window_test_at target dpi filter)
  set(name ${KF_BUILD_NAME}:${target}_at_${dpi})
  add_test(NAME ${name} COMMAND ${PROJECT_SOURCE_DIR}/cmake/wine_display $<TARGET_FILE:${target}>
    --gtest_brief=1 --gtest_filter=${filter})
  set_tests_properties(${name} PROPERTIES TIMEOUT 900 ENVIRONMENT "${KF_TEST_ENVIRONMENT};KF_DPI=${dpi}")
endfunction()

# kf_window_test(TARGET SOURCES...): a GoogleTest program that opens windows. It has a main program
# (tests/windows/support) and a display of its own. Windows only.
function(kf_window_test target)
  kf_test_program(${target} ${ARGN})
  target_link_libraries(${target} PRIVATE kf_window_support)
  add_test(NAME ${KF_BUILD_NAME}:${target}
    COMMAND ${PROJECT_SOURCE_DIR}/cmake/wine_display $<TARGET_FILE:${target}> --gtest_brief=1)
  set_tests_properties(${KF_BUILD_NAME}:${target} PROPERTIES TIMEOUT 900 ENVIRONMENT "${KF_TEST_ENVIRONMENT}")
endfunction()
