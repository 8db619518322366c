# The Qt to build with: what the project that has this one says, the Qt that it has found already, or Qt 5.
if(ZENTU_IS_TOP_LEVEL)
  set(QT_MAJOR_VERSION 5 CACHE STRING "Major version of Qt to build with, 5 or 6")
  set_property(CACHE QT_MAJOR_VERSION PROPERTY STRINGS 5 6)
elseif(NOT QT_MAJOR_VERSION AND TARGET Qt6::Core AND NOT TARGET Qt5::Core)
  set(QT_MAJOR_VERSION 6)
elseif(NOT QT_MAJOR_VERSION)
  set(QT_MAJOR_VERSION 5)
endif()

set(zentu_qt Qt${QT_MAJOR_VERSION})
# The two libraries lie side by side in one prefix, so each has a name of its own.
if(QT_MAJOR_VERSION EQUAL 5)
  set(zentu_qt_version 5.15)
  set(zentu_name ZentuKit)
  set(zentu_other_qt 6)
  set(zentu_other_name ZentuKit6)
elseif(QT_MAJOR_VERSION EQUAL 6)
  set(zentu_qt_version 6.2)
  set(zentu_name ZentuKit6)
  set(zentu_other_qt 5)
  set(zentu_other_name ZentuKit)
else()
  message(FATAL_ERROR "QT_MAJOR_VERSION is 5 or 6, not ${QT_MAJOR_VERSION}")
endif()

if(NOT ZENTU_IS_TOP_LEVEL)
  if(TARGET Qt${zentu_other_qt}::Core AND NOT TARGET ${zentu_qt}::Core)
    message(FATAL_ERROR "This project has found Qt ${zentu_other_qt}, and QT_MAJOR_VERSION is ${QT_MAJOR_VERSION}: "
      "set it to ${zentu_other_qt} before ZentuKit is added, or find Qt ${QT_MAJOR_VERSION} before.")
  endif()
  include(ZentuOneQt)
  # Evaluated here: the project may have other values when it is done.
  cmake_language(EVAL CODE "cmake_language(DEFER DIRECTORY [[${CMAKE_SOURCE_DIR}]] CALL zentu_find_mixed
    [[${CMAKE_SOURCE_DIR}]] ${QT_MAJOR_VERSION} ${zentu_other_qt}
    [[set QT_MAJOR_VERSION to ${zentu_other_qt} before ZentuKit is added]])")
endif()
