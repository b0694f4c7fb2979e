# What holds for every target: the language, the warnings, the sanitizers.
option(HALVANE_TESTS "Build the tests" ON)
set(HALVANE_SUITES "" CACHE STRING "The folders of tests/ to build, without the programs of fuzz/; empty: all")
option(HALVANE_HEADERS_ALONE "With the tests, compile each header by itself" ON)
option(HALVANE_SANITIZE "Build with AddressSanitizer and UndefinedBehaviorSanitizer" OFF)
option(HALVANE_WARNINGS_AS_ERRORS "As the presets have it; other compilers warn of other things" OFF)
option(HALVANE_FUZZ "Build the programs of fuzz/ for libFuzzer, with clang" OFF)
set(HALVANE_TOGETHER "" CACHE STRING "What is compiled several files at once, quicker in all: sources, tests, both or nothing")
option(HALVANE_MUTANTS "Build the engine as tools/mutate wants it: compiled quickly, and alone" OFF)

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

find_program(HALVANE_CCACHE ccache)
if(HALVANE_CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${HALVANE_CCACHE})
endif()

add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor -Woverloaded-virtual
                    -Wold-style-cast -Wimplicit-fallthrough $<$<BOOL:${HALVANE_WARNINGS_AS_ERRORS}>:-Werror>)

# g++ 12 sees overlapping copies in "literal" + std::to_string(x) that are not there.
add_compile_options($<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)

if(HALVANE_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
  # g++ 12 reports uninitialised values that only the sanitizers' own checks make thinkable.
  add_compile_options($<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
endif()

if(HALVANE_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()

if(WIN32)
  # Windows 7 and later; texts of the system's functions are wide.
  add_compile_definitions(UNICODE _UNICODE NOMINMAX WIN32_LEAN_AND_MEAN _WIN32_WINNT=0x0601)
endif()
