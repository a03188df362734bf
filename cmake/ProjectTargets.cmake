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

# Data files that programs find at run time: copied at build time into the
# build tree's data folder (so programs run from the build folder find them)
# and installed to the same place under the installed data folder.
#   renderwidget_stage_data(<target> SOURCE <folder> DESTINATION <sub folder> [PATTERN <glob>])
function(renderwidget_stage_data target)
  cmake_parse_arguments(ARG "" "SOURCE;DESTINATION;PATTERN" "" ${ARGN})
  if(NOT ARG_PATTERN)
    set(ARG_PATTERN "*")
  endif()
  file(GLOB_RECURSE files RELATIVE "${ARG_SOURCE}" CONFIGURE_DEPENDS "${ARG_SOURCE}/${ARG_PATTERN}")
  set(outputs "")
  foreach(file IN LISTS files)
    set(staged "${RENDERWIDGET_BUILD_DATA_DIR}/${ARG_DESTINATION}/${file}")
    add_custom_command(OUTPUT "${staged}"
      COMMAND ${CMAKE_COMMAND} -E copy "${ARG_SOURCE}/${file}" "${staged}"
      DEPENDS "${ARG_SOURCE}/${file}"
      COMMENT "Staging ${ARG_DESTINATION}/${file}")
    list(APPEND outputs "${staged}")
  endforeach()
  add_custom_target(${target} ALL DEPENDS ${outputs})
  install(DIRECTORY "${ARG_SOURCE}/"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/${RENDERWIDGET_DATA_SUBDIR}/${ARG_DESTINATION}"
    FILES_MATCHING PATTERN "${ARG_PATTERN}")
endfunction()
