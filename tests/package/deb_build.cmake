# Makes the Debian package once, from the build folder, for the tests that
# unpack it.
include("${CMAKE_CURRENT_LIST_DIR}/common.cmake")
file(REMOVE_RECURSE "${WORK_DIR}/deb")
run(${CMAKE_COMMAND} -E chdir "${BUILD_DIR}" cpack -G DEB -B "${WORK_DIR}/deb")
file(GLOB packages "${WORK_DIR}/deb/render-widget_${VERSION}_*.deb")
list(LENGTH packages count)
if(NOT count EQUAL 1)
  message(FATAL_ERROR "expected one render-widget_${VERSION}_<arch>.deb in ${WORK_DIR}/deb, found: ${packages}")
endif()
