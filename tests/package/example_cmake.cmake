# The installed example, built with CMake against the moved tree, run as a
# user runs it: the bundled robot in 3D; then, with an engine configuration
# of the user's that names no usable renderer, the fallback to the 2D view.
include("${CMAKE_CURRENT_LIST_DIR}/common.cmake")
set(out "${WORK_DIR}/example_cmake")
file(REMOVE_RECURSE "${out}")
run(${CMAKE_COMMAND} -S "${moved_prefix}/share/render_widget/examples/minimal_host" -B "${out}/build"
  "-DCMAKE_PREFIX_PATH=${moved_prefix}" -DCMAKE_BUILD_TYPE=Release "-DCMAKE_CXX_FLAGS=-Wall -Wextra -Werror")
run(${CMAKE_COMMAND} --build "${out}/build")

# No argument: the bundled robot of the moved tree, saved to minimal_host.png.
run_host("${out}/3d" "${out}/build/minimal_host")
expect_contains("${run_output}" "3D view, saved minimal_host.png")
run("${PICTURE_CHECK}" "${out}/3d/minimal_host.png" 3d)

# The user's configuration comes first; this one cannot start the engine.
file(WRITE "${out}/2d/config/balterconix/ogre/engine.cfg" "Plugin=NoSuchPlugin\n")
run_host("${out}/2d" "${out}/build/minimal_host")
expect_contains("${run_output}" "2D view, saved minimal_host.png")
run("${PICTURE_CHECK}" "${out}/2d/minimal_host.png" 2d)
