# Runs the benchmark program on three cheap cases with --quick and checks only
# that it finished, wrote JSON holding their results and reported no error.
# No timing is judged.
execute_process(
  COMMAND "${PROGRAM}" --quick "--benchmark_filter=^(Frame/bare/800x600|Pick/grid_10k|Moving/bundled/800x600)"
          "--benchmark_out=${OUTPUT}" --benchmark_out_format=json
  RESULT_VARIABLE result)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "the benchmark program failed: ${result}")
endif()
file(READ "${OUTPUT}" text)
string(JSON count ERROR_VARIABLE error LENGTH "${text}" benchmarks)
if(error)
  message(FATAL_ERROR "no valid JSON in ${OUTPUT}: ${error}")
endif()
if(count LESS 3)
  message(FATAL_ERROR "expected results of three benchmarks, found ${count}")
endif()
math(EXPR last "${count} - 1")
foreach(i RANGE ${last})
  string(JSON failed ERROR_VARIABLE missing GET "${text}" benchmarks ${i} error_occurred)
  if(NOT missing AND failed)
    string(JSON why GET "${text}" benchmarks ${i} error_message)
    message(FATAL_ERROR "a benchmark could not run: ${why}")
  endif()
endforeach()
message(STATUS "benchmark program wrote ${count} results")
