# The Debian package, unpacked with dpkg-deb into a scratch root (not
# installed): its contents, its dependencies, and its own viewer run
# headless from that root, which proves packaging and relocation together.
include("${CMAKE_CURRENT_LIST_DIR}/common.cmake")
file(GLOB package "${WORK_DIR}/deb/render-widget_${VERSION}_*.deb")
set(root "${WORK_DIR}/deb_root")
file(REMOVE_RECURSE "${root}")
run(dpkg-deb -x "${package}" "${root}")

foreach(file IN ITEMS
    bin/render_widget_viewer
    include/renderwidget/world_view_container.h
    include/renderwidget/render_widget_interface.h
    ${LIBDIR}/librender_widget.so.${VERSION_MAJOR}.${VERSION_MINOR}
    ${LIBDIR}/cmake/RenderWidget/RenderWidgetConfig.cmake
    ${LIBDIR}/cmake/RenderWidget/RenderWidgetConfigVersion.cmake
    ${LIBDIR}/pkgconfig/render_widget.pc
    share/render_widget/config/balterconix/ogre/engine.cfg
    share/render_widget/media/textures/sky_up.png
    share/render_widget/media/images/ogre/zel.png
    share/render_widget/robots/zel/zel.urdf
    share/render_widget/examples/minimal_host/main.cpp
    share/render_widget/examples/minimal_host/CMakeLists.txt)
  if(NOT EXISTS "${root}/usr/${file}")
    message(FATAL_ERROR "the package lacks /usr/${file}")
  endif()
endforeach()

# Its dependencies are Debian packages, the run-time libraries among them
# (found by dpkg-shlibdeps), each one installed on this machine.
run(dpkg-deb -f "${package}" Depends)
set(depends "${run_output}")
expect_contains("${depends}" "libqt5widgets5")
expect_contains("${depends}" "libogre1.12")
expect_contains("${depends}" "liburdfdom")
expect_contains("${depends}" "libassimp")
expect_contains("${depends}" "libogre-1.12-dev")
string(REGEX REPLACE "\\([^)]*\\)" "" names "${depends}")
string(REGEX REPLACE "[ \n]" "" names "${names}")
string(REPLACE "," ";" names "${names}")
foreach(alternatives IN LISTS names)
  string(REPLACE "|" ";" alternatives "${alternatives}")
  set(found FALSE)
  foreach(name IN LISTS alternatives)
    execute_process(COMMAND dpkg-query -W -f=\${Status} "${name}" OUTPUT_VARIABLE status ERROR_QUIET)
    if(status MATCHES "install ok installed")
      set(found TRUE)
    endif()
  endforeach()
  if(NOT found)
    message(FATAL_ERROR "the dependency ${alternatives} is no installed Debian package")
  endif()
endforeach()

run_host("${WORK_DIR}/deb_viewer" "${root}/usr/bin/render_widget_viewer" --screenshot shot.png)
expect_contains("${run_output}" "(3D view)")
run("${PICTURE_CHECK}" "${WORK_DIR}/deb_viewer/shot.png" 3d)
