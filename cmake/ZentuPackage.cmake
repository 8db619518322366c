# Packages: cpack -G DEB makes one of each part, cpack -G TGZ one archive. With Qt 6 there are only those of the
# library and of the inspector, which a program loads: the rest is the same for either.

string(TOLOWER "${zentu_name}" CPACK_PACKAGE_NAME)
set(CPACK_PACKAGE_VENDOR "The ZentuKit developers")
set(CPACK_PACKAGE_CONTACT "The ZentuKit developers <developers@zentukit.invalid>")
# Each package has a first line of its own.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(CPACK_RESOURCE_FILE_LICENSE "${PROJECT_SOURCE_DIR}/LICENSE")
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL runtime development)
if(QT_MAJOR_VERSION EQUAL 5)
  list(APPEND CPACK_COMPONENTS_ALL data headers)
  if(NOT ZENTU_WISP_LIBRARY)
    list(APPEND CPACK_COMPONENTS_ALL logger)
  endif()
endif()
if(QT_MAJOR_VERSION EQUAL 5 AND TARGET zentu-workbench)
  list(APPEND CPACK_COMPONENTS_ALL workbench)
endif()
if(TARGET zentu_inspector)
  list(APPEND CPACK_COMPONENTS_ALL inspector)
endif()
if(QT_MAJOR_VERSION EQUAL 5 AND TARGET zentu-trace)
  list(APPEND CPACK_COMPONENTS_ALL tools)
endif()

set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# The libraries that the packages bring along are not in a package yet when dependencies are sought.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${PROJECT_BINARY_DIR}/lib")
set(library lib${CPACK_PACKAGE_NAME})
set(same_version "(= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME ${library})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_DEPENDS "libwisp ${same_version}, zentukit-data ${same_version}")
set(CPACK_DEBIAN_LOGGER_PACKAGE_NAME libwisp)
set(CPACK_DEBIAN_LOGGER_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_DATA_PACKAGE_NAME zentukit-data)
set(CPACK_DEBIAN_DATA_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_DATA_PACKAGE_ARCHITECTURE all)
set(CPACK_DEBIAN_HEADERS_PACKAGE_NAME libzentukit-headers)
set(CPACK_DEBIAN_HEADERS_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_HEADERS_PACKAGE_ARCHITECTURE all)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME ${library}-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(qt_package "qtbase5-dev (>= 5.15)")
if(QT_MAJOR_VERSION EQUAL 6)
  set(qt_package "qt6-base-dev (>= 6.2)")
endif()
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS
  "${library} ${same_version}, libzentukit-headers ${same_version}, ${qt_package}")
set(CPACK_DEBIAN_WORKBENCH_PACKAGE_NAME zentu-workbench)
set(CPACK_DEBIAN_WORKBENCH_PACKAGE_SECTION editors)
set(CPACK_DEBIAN_WORKBENCH_PACKAGE_DEPENDS "libzentukit (= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_WORKBENCH_PACKAGE_RECOMMENDS libqt5svg5)
set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME zentukit-tools)
set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION devel)
# The commands ask for no widgets, and either inspector for nothing of the other Qt.
set(CPACK_DEBIAN_TOOLS_PACKAGE_RECOMMENDS
  "zentukit-inspector ${same_version} | zentukit6-inspector ${same_version}")
set(CPACK_DEBIAN_INSPECTOR_PACKAGE_NAME ${CPACK_PACKAGE_NAME}-inspector)
set(CPACK_DEBIAN_INSPECTOR_PACKAGE_SECTION devel)
set(CPACK_DEBIAN_INSPECTOR_PACKAGE_DEPENDS "${library} ${same_version}")
set(CPACK_DEBIAN_INSPECTOR_PACKAGE_RECOMMENDS "zentukit-tools ${same_version}")
set(services "Event bus, context-sensitive actions, documents with tabs, preferences,\n\
command line, object pool and file watcher for desktop programs.\n")
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION "application framework on Qt ${QT_MAJOR_VERSION} widgets\n${services}\
This package has what programs run with.")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
  "application framework on Qt ${QT_MAJOR_VERSION} widgets - development files\n${services}\
This package has what programs for this Qt are built with beside the headers.")
set(CPACK_COMPONENT_HEADERS_DESCRIPTION
  "application framework on Qt widgets - headers\n${services}\
This package has what is the same for Qt 5 and Qt 6: headers, guides, the help\n\
file for Qt Assistant, and zentu-new-host, which begins a program.")
set(CPACK_COMPONENT_DATA_DESCRIPTION "application framework on Qt widgets - translations\n${services}\
This package has the texts that are shown, in other languages.")
set(CPACK_COMPONENT_LOGGER_DESCRIPTION "logger of programs on ZentuKit\n\
Takes the lines of the trace and hands them to whoever listens, or writes them\n\
where the environment says. Another libwisp.so can take its place.")
set(CPACK_COMPONENT_WORKBENCH_DESCRIPTION "viewer and editor of texts and images\n\
Shows text and image files in one window, with a tab each, and sees them\n\
change on disk. It is made of every part of the library ZentuKit.")
set(CPACK_COMPONENT_TOOLS_DESCRIPTION "tools for programs on ZentuKit\n\
zentu-trace tells from what a program traced why an action is grey, who\n\
hears an event and what was never let go. zentu-inspect starts a program\n\
with the inspector for its Qt, which tells the same while it runs.")
set(CPACK_COMPONENT_INSPECTOR_DESCRIPTION "window beside programs on ZentuKit - Qt ${QT_MAJOR_VERSION}\n\
The inspector tells of a running program why an action is grey, who hears\n\
an event and what was never let go. The program loads it as a plug-in where\n\
QT_QPA_GENERIC_PLUGINS=zentu is set, or by zentu-inspect.")
set(CPACK_COMPONENTS_GROUPING IGNORE)

# What Debian asks of each package. Its own change log only leads to ours.
set(maintainer "${CPACK_PACKAGE_CONTACT}")
string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)
file(CONFIGURE OUTPUT changelog CONTENT "zentukit (@PROJECT_VERSION@) unstable; urgency=medium

  * See CHANGELOG.md in /usr/share/doc/libwisp.

 -- @maintainer@  @date@
" @ONLY)
foreach(component IN LISTS CPACK_COMPONENTS_ALL)
  string(TOUPPER "${component}" component_in_names)
  set(destination
    "${CMAKE_INSTALL_DATADIR}/doc/${CPACK_DEBIAN_${component_in_names}_PACKAGE_NAME}")
  install(FILES LICENSE RENAME copyright DESTINATION "${destination}" COMPONENT ${component})
  zentu_install_compressed(
    "${PROJECT_BINARY_DIR}/changelog" changelog.gz "${destination}" ${component})
endforeach()
# Programs and plug-ins load the libraries by these very names.
foreach(component IN ITEMS runtime logger)
  string(TOUPPER "${component}" component_in_names)
  set(name "${CPACK_DEBIAN_${component_in_names}_PACKAGE_NAME}")
  file(CONFIGURE OUTPUT "lintian/${name}" CONTENT
    "# The names without a version are part of the binary interface; see docs/abi.md.
@name@: shared-library-lacks-version *
" @ONLY)
  install(FILES "${PROJECT_BINARY_DIR}/lintian/${name}"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/lintian/overrides" COMPONENT ${component})
endforeach()
# The trigger is all that the linker's cache needs. CPack writes scripts that do the same a second
# time, unless it is told of others; those that it does not find it leaves out.
file(CONFIGURE OUTPUT triggers CONTENT "activate-noawait ldconfig\n" @ONLY)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA
  "${PROJECT_BINARY_DIR}/triggers" no/postinst no/postrm)
set(CPACK_DEBIAN_LOGGER_PACKAGE_CONTROL_EXTRA ${CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA})
include(CPack)
