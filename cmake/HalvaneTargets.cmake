# A layer is a library, a static one unless BUILD_SHARED_LIBS is set; its headers are included as "layer/Header.h".
#   halvane_layer(collection SOURCES a.cpp b.cpp DEPENDS fmt::fmt)
function(halvane_layer name)
  cmake_parse_arguments(arg "" "" "SOURCES;DEPENDS;PRIVATE_DEPENDS" ${ARGN})
  add_library(halvane_${name} ${arg_SOURCES})
  target_include_directories(halvane_${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(halvane_${name} PUBLIC ${arg_DEPENDS} PRIVATE ${arg_PRIVATE_DEPENDS})
endfunction()

# Where the tests find files of the source tree; Wine shows the whole file system as drive Z.
set(HALVANE_SOURCE_DIR ${PROJECT_SOURCE_DIR})
if(WIN32 AND CMAKE_CROSSCOMPILING)
  string(PREPEND HALVANE_SOURCE_DIR Z:)
endif()

# CTest entries of a program with tests in several files, PROGRAM.FILE: those of a file are found by name and run beside
# the others. A suite in two files runs with the first of them. The files are read again when one changes.
function(halvane_test_entries name)
  set(known)
  foreach(source IN LISTS ARGN)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${source})
    file(STRINGS ${source} lines REGEX "^(TYPED_)?TEST(_F|_P)?\\([A-Za-z0-9_]+")
    list(TRANSFORM lines REPLACE "^[A-Z_]+\\(([A-Za-z0-9_]+).*" "\\1")
    list(REMOVE_DUPLICATES lines)
    if(NOT lines)
      message(FATAL_ERROR "${source} has no tests")
    endif()
    list(REMOVE_ITEM lines ${known})
    if(NOT lines)
      continue()
    endif()
    list(APPEND known ${lines})
    # What is instantiated for values or types has names around that of the suite.
    list(TRANSFORM lines REPLACE "(.+)" "\\1.*:*/\\1.*:\\1/*")
    list(JOIN lines ":" filter)
    cmake_path(GET source STEM file)
    string(REGEX REPLACE "_test$" "" file ${file})
    add_test(NAME ${name}.${file} COMMAND halvane_${name}_tests --gtest_filter=${filter})
    set_tests_properties(${name}.${file} PROPERTIES TIMEOUT 600)
  endforeach()
endfunction()

# A test program, one per layer, with a CTest entry for each file of tests; on Windows one in all, since a process is slow
# to start under Wine.
# USES_COMPONENTS: on Windows the tests run in an apartment, as they would in a program that uses components.
# IN_TREE: the sources that find files by HALVANE_SOURCE_DIR. Only they are compiled with a path of this tree, so that
# a compiler cache serves other copies of it.
#   halvane_tests(collection SOURCES a_test.cpp DEPENDS halvane_collection)
function(halvane_tests name)
  cmake_parse_arguments(arg "USES_COMPONENTS" "" "SOURCES;DEPENDS;IN_TREE" ${ARGN})
  if(WIN32 AND arg_USES_COMPONENTS)
    list(APPEND arg_SOURCES ${PROJECT_SOURCE_DIR}/tests/support/Apartment.cpp)
    list(APPEND arg_DEPENDS ole32)
  endif()
  add_executable(halvane_${name}_tests ${arg_SOURCES})
  target_include_directories(halvane_${name}_tests PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  target_link_libraries(halvane_${name}_tests PRIVATE ${arg_DEPENDS} GTest::gmock GTest::gtest_main)
  # Most time of a test run goes into compiling the tests, which are run once: -O1 takes two thirds of it.
  if(NOT HALVANE_SANITIZE)
    target_compile_options(halvane_${name}_tests PRIVATE $<$<CONFIG:Release>:-O1>)
  endif()
  if(arg_IN_TREE)
    set_property(
      SOURCE ${arg_IN_TREE}
      APPEND
      PROPERTY COMPILE_DEFINITIONS HALVANE_SOURCE_DIR="${HALVANE_SOURCE_DIR}")
  endif()
  set(files ${arg_SOURCES})
  list(FILTER files INCLUDE REGEX "_test\\.cpp$")
  list(LENGTH files nFiles)
  if(WIN32 OR nFiles EQUAL 1)
    add_test(NAME ${name} COMMAND halvane_${name}_tests)
    set_tests_properties(${name} PROPERTIES TIMEOUT 600)
  else()
    halvane_test_entries(${name} ${files})
  endif()
endfunction()

# Two more CTest entries of a command whose results must not hang on what memory held before: glibc fills what it
# hands out and what it takes back with either byte.
#   halvane_test_in_filled_memory(examples COMMAND_LINE…)
function(halvane_test_in_filled_memory name)
  if(HALVANE_SANITIZE)
    return()
  endif()
  foreach(byte IN ITEMS 85 170)
    add_test(NAME ${name}_in_memory_of_${byte} COMMAND ${ARGN})
    set_tests_properties(${name}_in_memory_of_${byte} PROPERTIES TIMEOUT 300 ENVIRONMENT MALLOC_PERTURB_=${byte})
  endforeach()
endfunction()
