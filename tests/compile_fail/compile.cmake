# Compiles the source. With a case it must be refused, by an error that matches the pattern.
if(case)
  set(definition "-D${case}")
endif()
set(ENV{LC_ALL} C)
execute_process(
  COMMAND "${compiler}" -std=c++20 -fsyntax-only "-I${includes}" ${definition} "${source}"
  RESULT_VARIABLE status
  ERROR_VARIABLE output)
if(NOT case)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "the control does not compile:\n${output}")
  endif()
elseif(status EQUAL 0)
  message(FATAL_ERROR "it compiles")
elseif(NOT output MATCHES "error: [^\n]*(${pattern})")
  message(FATAL_ERROR "it is refused for another reason:\n${output}")
endif()
