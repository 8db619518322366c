# The Qt to build with: the one that is asked for, the one that the host has found already, or Qt 5. Not kept
# in the cache, which is the host's.
if(NOT QT_MAJOR_VERSION)
  set(QT_MAJOR_VERSION 5)
  if(TARGET Qt6::Core AND NOT TARGET Qt5::Core)
    set(QT_MAJOR_VERSION 6)
  endif()
endif()

set(zentu_qt Qt${QT_MAJOR_VERSION})
# The two libraries lie side by side in one prefix, so each has a name of its own.
if(QT_MAJOR_VERSION EQUAL 5)
  set(zentu_qt_version 5.15)
  set(zentu_name ZentuKit)
elseif(QT_MAJOR_VERSION EQUAL 6)
  set(zentu_qt_version 6.2)
  set(zentu_name ZentuKit6)
else()
  message(FATAL_ERROR "QT_MAJOR_VERSION is 5 or 6, not ${QT_MAJOR_VERSION}")
endif()
