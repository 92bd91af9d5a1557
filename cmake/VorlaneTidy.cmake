# Target tidy: clang-tidy over the sources, by the checks of .clang-tidy; a finding is an error.

find_program(VORLANE_RUN_CLANG_TIDY NAMES run-clang-tidy run-clang-tidy-14)
if(NOT VORLANE_RUN_CLANG_TIDY)
  message(STATUS "clang-tidy was not found (Debian: clang-tidy): the target tidy is left out")
  return()
endif()
add_custom_target(
  tidy
  COMMAND "${VORLANE_RUN_CLANG_TIDY}" -quiet -p "${PROJECT_BINARY_DIR}"
          "/src/(env|model|expr|constraint|algorithm|collection|jace|bootstrap)/"
          "/engines/[a-z]+/(src|solve)/"
  WORKING_DIRECTORY "${PROJECT_SOURCE_DIR}"
  VERBATIM)
