# What is installed, in three parts: what programs run with, what they are built with, the Workbench.

include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(headers "${CMAKE_INSTALL_INCLUDEDIR}/ZentuKit")
set(package "${CMAKE_INSTALL_LIBDIR}/cmake/ZentuKit")
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

install(TARGETS ${libraries} EXPORT ZentuKitTargets
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT runtime)
install(FILES ${zentu_public_headers} DESTINATION "${headers}" COMPONENT development)
install(DIRECTORY "${zentu_class_headers}/" DESTINATION "${headers}" COMPONENT development)
if(NOT ZENTU_WISP_LIBRARY)
  install(FILES "${PROJECT_SOURCE_DIR}/wisp/wisp_recorder.h"
    DESTINATION "${headers}" COMPONENT development)
endif()

install(EXPORT ZentuKitTargets NAMESPACE ZentuKit::
  DESTINATION "${package}" COMPONENT development)
configure_package_config_file("${templates}/ZentuKitConfig.cmake.in"
  "${PROJECT_BINARY_DIR}/ZentuKitConfig.cmake" INSTALL_DESTINATION "${package}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/ZentuKitConfigVersion.cmake"
  COMPATIBILITY SameMajorVersion)
install(
  FILES "${PROJECT_BINARY_DIR}/ZentuKitConfig.cmake"
    "${PROJECT_BINARY_DIR}/ZentuKitConfigVersion.cmake"
  DESTINATION "${package}" COMPONENT development)

# Both find the folder from where they stand in it.
file(RELATIVE_PATH ZENTU_PREFIX_FROM_PC
  "/prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/prefix")
configure_file("${templates}/ZentuKit.pc.in" "${PROJECT_BINARY_DIR}/ZentuKit.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/ZentuKit.pc"
  DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig" COMPONENT development)
file(RELATIVE_PATH ZENTU_PREFIX_FROM_PRI "/prefix/${CMAKE_INSTALL_DATADIR}/ZentuKit" "/prefix")
configure_file("${templates}/ZentuKit.pri.in" "${PROJECT_BINARY_DIR}/ZentuKit.pri" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/ZentuKit.pri"
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

set(documents "${CMAKE_INSTALL_DATADIR}/doc")
install(FILES LICENSE CHANGELOG.md DESTINATION "${documents}/libzentukit" COMPONENT runtime)
install(FILES LICENSE README.md DESTINATION "${documents}/libzentukit-dev" COMPONENT development)
if(TARGET zentu-workbench)
  install(FILES LICENSE DESTINATION "${documents}/zentu-workbench" COMPONENT workbench)
endif()
