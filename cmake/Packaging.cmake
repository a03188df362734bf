# The Debian package: `cpack -G DEB` in the build folder (scripts/package.sh)
# makes render-widget_<version>_<arch>.deb with the libraries, headers, CMake
# and pkg-config files, data, the viewer and the host example, under /usr.
set(CPACK_PACKAGE_NAME "render-widget")
set(CPACK_PACKAGE_VENDOR "RenderWidget developers")
set(CPACK_PACKAGE_CONTACT "RenderWidget developers <render-widget@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_GENERATOR "DEB")
set(CPACK_PACKAGING_INSTALL_PREFIX "/usr")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION "libdevel")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION "Qt widgets that show a robot in 3D (OGRE) or as a 2D picture
 librender_widget and its platform libraries (world model from URDF, scene
 view, render engine, math, framework), their headers, CMake package and
 pkg-config files, the viewer render_widget_viewer and a host example.")
# The run-time libraries, by dpkg-shlibdeps from the binaries; our own
# libraries are in the package itself.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${PROJECT_BINARY_DIR}/${CMAKE_INSTALL_LIBDIR}")
# Written by hand, what dpkg-shlibdeps cannot see: the engine loads OGRE's
# plugins by their unversioned names (RenderSystem_GL.so, in the -dev
# package), and hosts build against the headers of Qt, OGRE, Boost and Eigen
# that the CMake and pkg-config files ask for.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libogre-1.12-dev, qtbase5-dev, libboost-dev, libeigen3-dev")
include(CPack)
