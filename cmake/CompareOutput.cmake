# Runs the example and compares what it prints.
execute_process(COMMAND "${program}" "${input}" OUTPUT_VARIABLE output RESULT_VARIABLE status)
file(READ "${expected}" wanted)
if(NOT status EQUAL 0 OR NOT output STREQUAL wanted)
  message(FATAL_ERROR "status ${status}, output:\n${output}")
endif()
