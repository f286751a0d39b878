# Runs PROGRAM and compares what it prints with the file EXPECTED, byte for byte.
execute_process(COMMAND ${PROGRAM} OUTPUT_VARIABLE output RESULT_VARIABLE code)
file(READ ${EXPECTED} expected)
if(NOT code STREQUAL "0" OR NOT output STREQUAL expected)
  message(FATAL_ERROR "exit ${code}; printed:\n${output}expected:\n${expected}")
endif()
