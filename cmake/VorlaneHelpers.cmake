# What every target of the project has in common, and one helper for each kind of target.

add_library(vorlane_warnings INTERFACE)
target_compile_options(
  vorlane_warnings
  INTERFACE -Wall
            -Wextra
            -Wpedantic
            -Wshadow
            -Wconversion
            -Wold-style-cast
            -Wcast-qual
            -Wnon-virtual-dtor
            -Woverloaded-virtual
            -Wextra-semi
            -Wundef
            -Wformat=2
            $<$<BOOL:${VORLANE_WERROR}>:-Werror>)

# A library of the project: C++20, hidden symbols, warnings.
function(zyl_library_settings target)
  target_compile_features(${target} PUBLIC cxx_std_20)
  set_target_properties(
    ${target}
    PROPERTIES CXX_EXTENSIONS OFF
               CXX_VISIBILITY_PRESET hidden
               VISIBILITY_INLINES_HIDDEN ON
               POSITION_INDEPENDENT_CODE ON)
  target_link_libraries(${target} PRIVATE $<BUILD_INTERFACE:vorlane_warnings>)
  # Calls among our own functions need no way through the table of symbols. Their addresses still
  # come from it, and so are the same in the library and in a program: types are known by them.
  # clang would take the library's own address of a function too, which a program at a fixed address
  # has another of: type tokens would be two.
  target_compile_options(${target}
                         PRIVATE $<$<CXX_COMPILER_ID:GNU>:-fno-semantic-interposition>)
  # clang declares the sized global release only on demand.
  target_compile_options(${target} PRIVATE $<$<CXX_COMPILER_ID:Clang>:-fsized-deallocation>)
endfunction()

# Adds the subdirectories that are there: the tree may be built without some of its parts.
function(zyl_add_subdirectories)
  foreach(directory IN LISTS ARGN)
    if(EXISTS "${CMAKE_CURRENT_SOURCE_DIR}/${directory}/CMakeLists.txt")
      add_subdirectory(${directory})
    endif()
  endforeach()
endfunction()

# Builds the tests with the label "threads" alone.
add_custom_target(threads_tests)

# zyl_test(name SOURCES ... [LIBS ...] [LABELS ...]): a GoogleTest binary, vorlane::model by default.
# Tests of the modelling layer run a second time with the pools off.
function(zyl_test name)
  cmake_parse_arguments(TEST "ONE_MODE" "" "SOURCES;LIBS;LABELS" ${ARGN})
  if(NOT TEST_LIBS)
    set(TEST_LIBS vorlane::model)
  endif()
  add_executable(${name} ${TEST_SOURCES})
  target_compile_features(${name} PRIVATE cxx_std_20)
  set_target_properties(${name} PROPERTIES CXX_EXTENSIONS OFF)
  target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}/tests")
  target_link_libraries(${name} PRIVATE ${TEST_LIBS} vorlane_warnings GTest::gtest_main GTest::gmock)
  gtest_discover_tests(
    ${name}
    DISCOVERY_MODE PRE_TEST
    PROPERTIES TIMEOUT 300 LABELS "${TEST_LABELS}")
  if("threads" IN_LIST TEST_LABELS)
    add_dependencies(threads_tests ${name})
  endif()
  if(NOT TEST_ONE_MODE)
    add_test(NAME ${name}.no_pools COMMAND ${name} --gtest_brief=1)
    set_tests_properties(
      ${name}.no_pools PROPERTIES ENVIRONMENT "ZYL_NO_MEMORY_MANAGER=1" TIMEOUT 900 LABELS
                                  "${TEST_LABELS}")
  endif()
endfunction()

# zyl_bench(name SOURCES ...): a Google Benchmark binary.
function(zyl_bench name)
  cmake_parse_arguments(BENCH "" "" "SOURCES;LIBS" ${ARGN})
  add_executable(${name} ${BENCH_SOURCES})
  target_compile_features(${name} PRIVATE cxx_std_20)
  target_link_libraries(${name} PRIVATE vorlane::model ${BENCH_LIBS} vorlane_warnings
                                        benchmark::benchmark)
endfunction()
