# Helpers of the package tests (run with cmake -P).

# Runs a command; stops the test with its output when it fails. The output
# is left in `run_output`.
function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE out ERROR_VARIABLE err)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "failed (${result}): ${ARGN}\n${out}\n${err}")
  endif()
  message(STATUS "${ARGN}\n${out}${err}")
  set(run_output "${out}${err}" PARENT_SCOPE)
endfunction()

# Runs a host program the way a user does, with settings and logs in a
# scratch folder of its own, in `folder`.
function(run_host folder)
  file(MAKE_DIRECTORY "${folder}/config" "${folder}/data")
  run(${CMAKE_COMMAND} -E chdir "${folder}" ${CMAKE_COMMAND} -E env
    "XDG_CONFIG_HOME=${folder}/config" "XDG_DATA_HOME=${folder}/data" ${ARGN})
  set(run_output "${run_output}" PARENT_SCOPE)
endfunction()

function(expect_contains text fragment)
  string(FIND "${text}" "${fragment}" at)
  if(at EQUAL -1)
    message(FATAL_ERROR "expected \"${fragment}\" in:\n${text}")
  endif()
endfunction()

# The moved installed tree the fixture package_install_moved leaves.
set(moved_prefix "${WORK_DIR}/moved")
