# A layer is a static library whose headers are included as "layer/Header.h".
#   halvane_layer(collection SOURCES a.cpp b.cpp DEPENDS fmt::fmt)
function(halvane_layer name)
  cmake_parse_arguments(arg "" "" "SOURCES;DEPENDS;PRIVATE_DEPENDS" ${ARGN})
  add_library(halvane_${name} STATIC ${arg_SOURCES})
  target_include_directories(halvane_${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(halvane_${name} PUBLIC ${arg_DEPENDS} PRIVATE ${arg_PRIVATE_DEPENDS})
endfunction()

# Where the tests find files of the source tree; Wine shows the whole file system as drive Z.
set(HALVANE_SOURCE_DIR ${PROJECT_SOURCE_DIR})
if(WIN32 AND CMAKE_CROSSCOMPILING)
  string(PREPEND HALVANE_SOURCE_DIR Z:)
endif()

# A test program, one per layer; one CTest entry each, since a process that loads the data libraries is slow to start.
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
  add_test(NAME ${name} COMMAND halvane_${name}_tests)
  set_tests_properties(${name} PROPERTIES TIMEOUT 600)
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
