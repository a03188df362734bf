# Installs the built project into a scratch prefix, then moves the whole
# tree elsewhere: what the other package tests build and run against.
include("${CMAKE_CURRENT_LIST_DIR}/common.cmake")
file(REMOVE_RECURSE "${WORK_DIR}")
set(staging "${WORK_DIR}/first_place")
run(${CMAKE_COMMAND} --install "${BUILD_DIR}" --prefix "${staging}")
file(RENAME "${staging}" "${moved_prefix}")

# Nothing installed names the place it was installed to.
file(GLOB_RECURSE texts "${moved_prefix}/*.cmake" "${moved_prefix}/*.pc" "${moved_prefix}/*.cfg")
foreach(text IN LISTS texts)
  file(READ "${text}" content)
  string(FIND "${content}" "${staging}" at)
  if(NOT at EQUAL -1)
    message(FATAL_ERROR "${text} names the installation folder ${staging}")
  endif()
endforeach()

# The shared libraries' SONAMEs follow the package's compatibility rule:
# lib<name>.so.<major>.<minor>, present as a link in the tree.
foreach(library IN ITEMS render_widget scene_view render_engine world_model mk_math ku_framework)
  set(file "${moved_prefix}/${LIBDIR}/lib${library}.so")
  run(readelf -d "${file}")
  expect_contains("${run_output}" "Library soname: [lib${library}.so.${VERSION_MAJOR}.${VERSION_MINOR}]")
  if(NOT EXISTS "${file}.${VERSION_MAJOR}.${VERSION_MINOR}")
    message(FATAL_ERROR "${file}.${VERSION_MAJOR}.${VERSION_MINOR} is missing")
  endif()
endforeach()
