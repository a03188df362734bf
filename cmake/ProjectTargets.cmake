# Helpers shared by every library, tool and test of the project.

# Our own code compiles with -Wall -Wextra and no warning.
function(renderwidget_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra)
  if(RENDERWIDGET_WARNINGS_AS_ERRORS)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
endfunction()

# A shared library of the project: warnings, an alias RenderWidget::<name>,
# a public include folder, and install rules into the exported package.
#   renderwidget_library(<name> SOURCES ... [INCLUDE_DIR dir])
function(renderwidget_library name)
  cmake_parse_arguments(ARG "" "INCLUDE_DIR" "SOURCES" ${ARGN})
  add_library(${name} ${ARG_SOURCES})
  add_library(RenderWidget::${name} ALIAS ${name})
  renderwidget_warnings(${name})
  set_target_properties(${name} PROPERTIES
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR}
    LIBRARY_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/${CMAKE_INSTALL_LIBDIR}")
  if(ARG_INCLUDE_DIR)
    target_include_directories(${name} PUBLIC
      $<BUILD_INTERFACE:${ARG_INCLUDE_DIR}>
      $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
    install(DIRECTORY ${ARG_INCLUDE_DIR}/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
  endif()
  install(TARGETS ${name} EXPORT RenderWidgetTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
    INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
endfunction()

# A GoogleTest executable registered with ctest.
#   renderwidget_test(<name> SOURCES ... LIBRARIES ... [LABELS ...])
function(renderwidget_test name)
  if(NOT RENDERWIDGET_BUILD_TESTS)
    return()
  endif()
  cmake_parse_arguments(ARG "" "" "SOURCES;LIBRARIES;LABELS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  renderwidget_warnings(${name})
  target_link_libraries(${name} PRIVATE ${ARG_LIBRARIES} GTest::gtest GTest::gtest_main)
  gtest_discover_tests(${name}
    WORKING_DIRECTORY "${CMAKE_CURRENT_BINARY_DIR}"
    DISCOVERY_TIMEOUT 60 DISCOVERY_MODE PRE_TEST
    PROPERTIES LABELS "${ARG_LABELS}" TIMEOUT 300)
endfunction()
