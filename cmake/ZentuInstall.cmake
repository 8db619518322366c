# What is installed, in parts: what programs run with and are built with, for each Qt; the logger, the texts and
# the headers, which are the same for either; and programs.

include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(headers "${CMAKE_INSTALL_INCLUDEDIR}/ZentuKit")
set(package "${CMAKE_INSTALL_LIBDIR}/cmake/${zentu_name}")
set(templates "${PROJECT_SOURCE_DIR}/cmake/templates")

set(libraries ZentuKit)
if(NOT ZENTU_WISP_LIBRARY)
  list(APPEND libraries zentu_wisp)
endif()
foreach(library IN LISTS libraries)
  target_include_directories(${library} INTERFACE
    "$<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>" "$<INSTALL_INTERFACE:${headers}>")
endforeach()
# Each finds the other where it stands, so the folder can be moved.
set_target_properties(${libraries} PROPERTIES INSTALL_RPATH "$ORIGIN")

install(TARGETS ZentuKit EXPORT ${zentu_name}Targets
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT runtime)
if(NOT ZENTU_WISP_LIBRARY)
  install(TARGETS zentu_wisp EXPORT ${zentu_name}Targets
    LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT logger)
endif()
install(FILES ${zentu_public_headers} DESTINATION "${headers}" COMPONENT headers)
install(DIRECTORY "${zentu_class_headers}/" DESTINATION "${headers}" COMPONENT headers)
if(NOT ZENTU_WISP_LIBRARY)
  install(FILES "${PROJECT_SOURCE_DIR}/wisp/wisp_recorder.h"
    "${PROJECT_SOURCE_DIR}/inspect/testing/zentu_trace_normal.h"
    "${PROJECT_SOURCE_DIR}/inspect/testing/zentu_trace_test.h"
    DESTINATION "${headers}" COMPONENT headers)
endif()

install(EXPORT ${zentu_name}Targets NAMESPACE ZentuKit::
  DESTINATION "${package}" COMPONENT development)
configure_package_config_file("${templates}/ZentuKitConfig.cmake.in"
  "${PROJECT_BINARY_DIR}/${zentu_name}Config.cmake" INSTALL_DESTINATION "${package}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/${zentu_name}ConfigVersion.cmake"
  COMPATIBILITY SameMajorVersion)
install(
  FILES "${PROJECT_BINARY_DIR}/${zentu_name}Config.cmake"
    "${PROJECT_BINARY_DIR}/${zentu_name}ConfigVersion.cmake"
    "${PROJECT_SOURCE_DIR}/cmake/ZentuOneQt.cmake"
  DESTINATION "${package}" COMPONENT development)

# Both find the folder from where they stand in it.
file(RELATIVE_PATH ZENTU_PREFIX_FROM_PC
  "/prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/prefix")
configure_file("${templates}/ZentuKit.pc.in" "${PROJECT_BINARY_DIR}/${zentu_name}.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/${zentu_name}.pc"
  DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig" COMPONENT development)
file(RELATIVE_PATH ZENTU_PREFIX_FROM_PRI "/prefix/${CMAKE_INSTALL_DATADIR}/ZentuKit" "/prefix")
configure_file("${templates}/ZentuKit.pri.in" "${PROJECT_BINARY_DIR}/${zentu_name}.pri" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/${zentu_name}.pri"
  DESTINATION "${CMAKE_INSTALL_DATADIR}/ZentuKit" COMPONENT development)

if(TARGET zentu-workbench)
  file(RELATIVE_PATH libraries_from_programs
    "/prefix/${CMAKE_INSTALL_BINDIR}" "/prefix/${CMAKE_INSTALL_LIBDIR}")
  set_target_properties(zentu-workbench PROPERTIES
    INSTALL_RPATH "$ORIGIN/${libraries_from_programs}")
  set(workbench "${PROJECT_SOURCE_DIR}/examples/workbench")
  install(TARGETS zentu-workbench
    RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT workbench)
  install(FILES "${workbench}/zentu-workbench.desktop"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/applications" COMPONENT workbench)
  install(FILES "${workbench}/zentu-workbench.svg"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps" COMPONENT workbench)
endif()

# What a program is begun with. In the tree the command finds the template among the examples.
install(DIRECTORY "${PROJECT_SOURCE_DIR}/examples/new-host"
  DESTINATION "${CMAKE_INSTALL_DATADIR}/ZentuKit" COMPONENT headers)
file(RELATIVE_PATH template
  "/prefix/${CMAKE_INSTALL_BINDIR}" "/prefix/${CMAKE_INSTALL_DATADIR}/ZentuKit/new-host")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/scripts/new-host")
file(READ "${PROJECT_SOURCE_DIR}/scripts/new-host" command)
string(REPLACE "../examples/new-host" "${template}" command "${command}")
file(WRITE "${PROJECT_BINARY_DIR}/zentu-new-host" "${command}")
install(PROGRAMS "${PROJECT_BINARY_DIR}/zentu-new-host"
  DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT headers)

# The pages lie beside each other as they do in the tree, so that their links hold.
set(documents "${CMAKE_INSTALL_DATADIR}/doc")
set(ZENTU_QCH "" CACHE FILEPATH "The zentukit.qch of scripts/docs, to be installed")
install(FILES CHANGELOG.md DESTINATION "${documents}/libwisp" COMPONENT logger)
install(FILES README.md CHANGELOG.md CODE_OF_CONDUCT.md CONTRIBUTING.md LICENSE SECURITY.md ${ZENTU_QCH}
  DESTINATION "${documents}/libzentukit-dev" COMPONENT headers)
install(DIRECTORY docs DESTINATION "${documents}/libzentukit-dev" COMPONENT headers
  FILES_MATCHING PATTERN "*.md" PATTERN "*.png" PATTERN "*.svg"
  PATTERN man EXCLUDE PATTERN abi EXCLUDE)
install(DIRECTORY examples/guide examples/tutorial DESTINATION "${documents}/libzentukit-dev/examples"
  COMPONENT headers FILES_MATCHING PATTERN "*.cpp")

# Compressed, as Debian has them and every man program reads them; without a time, so that equal files
# are equal.
find_program(ZENTU_GZIP gzip)
mark_as_advanced(ZENTU_GZIP)
function(zentu_install_compressed file name destination component)
  if(NOT ZENTU_GZIP)
    return()
  endif()
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${file}")
  set(compressed "${PROJECT_BINARY_DIR}/compressed")
  file(MAKE_DIRECTORY "${compressed}")
  execute_process(COMMAND "${ZENTU_GZIP}" -9nc "${file}"
    OUTPUT_FILE "${compressed}/${name}" COMMAND_ERROR_IS_FATAL ANY)
  install(FILES "${compressed}/${name}" DESTINATION "${destination}" COMPONENT ${component})
endfunction()
zentu_install_compressed("${PROJECT_SOURCE_DIR}/docs/man/zentu-new-host.1" zentu-new-host.1.gz
  "${CMAKE_INSTALL_MANDIR}/man1" headers)
if(TARGET zentu-workbench)
  zentu_install_compressed("${PROJECT_SOURCE_DIR}/docs/man/zentu-workbench.1" zentu-workbench.1.gz
    "${CMAKE_INSTALL_MANDIR}/man1" workbench)
endif()
if(TARGET zentu-trace)
  install(TARGETS zentu-trace RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT tools)
  install(FILES inspect/trace/completion.bash RENAME zentu-trace
    DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions" COMPONENT tools)
  foreach(page IN ITEMS zentu-trace.1 zentu-inspect.1)
    zentu_install_compressed("${PROJECT_SOURCE_DIR}/docs/man/${page}" ${page}.gz
      "${CMAKE_INSTALL_MANDIR}/man1" tools)
  endforeach()
endif()
