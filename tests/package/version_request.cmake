# find_package(RenderWidget <version>) against the moved tree: 0.1 is met,
# a later minor version or another major version is refused, clearly.
include("${CMAKE_CURRENT_LIST_DIR}/common.cmake")
set(out "${WORK_DIR}/version_request")
foreach(version IN ITEMS 0.1 0.1.0 0.2 9.0)
  set(project "${out}/v${version}")
  file(REMOVE_RECURSE "${project}")
  file(WRITE "${project}/CMakeLists.txt"
    "cmake_minimum_required(VERSION 3.16)\nproject(version_request LANGUAGES CXX)\n"
    "find_package(RenderWidget ${version} REQUIRED)\n")
  execute_process(COMMAND ${CMAKE_COMMAND} -S "${project}" -B "${project}/build" "-DCMAKE_PREFIX_PATH=${moved_prefix}"
    RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if(version VERSION_LESS 0.2)
    if(NOT result EQUAL 0)
      message(FATAL_ERROR "find_package(RenderWidget ${version}) failed:\n${output}")
    endif()
  else()
    if(result EQUAL 0)
      message(FATAL_ERROR "find_package(RenderWidget ${version}) was accepted by version ${VERSION}:\n${output}")
    endif()
    # CMake names the version asked for and the one found.
    expect_contains("${output}" "\"${version}\"")
    expect_contains("${output}" "version: ${VERSION}")
    message(STATUS "find_package(RenderWidget ${version}) refused:\n${output}")
  endif()
endforeach()
