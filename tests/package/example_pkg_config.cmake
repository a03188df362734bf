# The installed example, built without CMake: one compiler call with the
# flags `pkg-config --cflags --libs render_widget` gives for the moved tree.
include("${CMAKE_CURRENT_LIST_DIR}/common.cmake")
set(out "${WORK_DIR}/example_pkg_config")
file(REMOVE_RECURSE "${out}")
file(MAKE_DIRECTORY "${out}")
set(ENV{PKG_CONFIG_PATH} "${moved_prefix}/${LIBDIR}/pkgconfig")
run(pkg-config --cflags --libs render_widget)
string(STRIP "${run_output}" flags)
separate_arguments(flags UNIX_COMMAND "${flags}")
run(pkg-config --variable=libdir render_widget)
string(STRIP "${run_output}" libdir)
run(${CXX} -std=c++17 -Wall -Wextra -Werror "${moved_prefix}/share/render_widget/examples/minimal_host/main.cpp"
  -o "${out}/minimal_host" ${flags} "-Wl,-rpath,${libdir}")

# A robot file and a picture named on the command line.
run_host("${out}" "${out}/minimal_host" "${moved_prefix}/share/render_widget/robots/zel/zel.urdf" shot.png)
expect_contains("${run_output}" "3D view, saved shot.png")
run("${PICTURE_CHECK}" "${out}/shot.png" 3d)

# A robot file that does not exist: a message and status 2, the earlier
# picture left alone.
execute_process(COMMAND ${CMAKE_COMMAND} -E env "XDG_CONFIG_HOME=${out}/config" "XDG_DATA_HOME=${out}/data"
    "${out}/minimal_host" "${out}/no_such_robot.urdf" shot.png
  WORKING_DIRECTORY "${out}" RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
if(NOT result EQUAL 2)
  message(FATAL_ERROR "a missing robot file gave status ${result}:\n${output}")
endif()
expect_contains("${output}" "minimal_host: cannot load ${out}/no_such_robot.urdf")
if(NOT EXISTS "${out}/shot.png")
  message(FATAL_ERROR "the failed run removed the earlier picture")
endif()
