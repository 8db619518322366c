# What a library leaves alone in the project that has it as a folder.

# What FetchContent, and CMake for each folder, note down for themselves.
set(own_notes
  "^(_|variable$|ARG[CNV0-9]|CMAKE_(CURRENT|PROJECT|MATCH)_|FETCHCONTENT_|FetchContent|fetchcontent|ZENTUKIT_|zentukit_)")

macro(remember_variables)
  get_cmake_property(known VARIABLES)
  foreach(variable IN LISTS known)
    set(known_${variable} "${${variable}}")
  endforeach()
endmacro()

function(check_variables)
  get_cmake_property(variables VARIABLES)
  foreach(variable IN LISTS known)
    if(NOT "${known_${variable}}" STREQUAL "${${variable}}" AND NOT variable MATCHES "${own_notes}")
      message(SEND_ERROR "${variable} was changed to ${${variable}}")
    endif()
  endforeach()
  list(FILTER variables EXCLUDE REGEX "^known|${own_notes}")
  foreach(variable IN LISTS variables)
    # What is kept in the cache is named after who keeps it. What Qt 6 looks for is there too.
    if(NOT variable IN_LIST known
        AND NOT variable MATCHES "^(ZENTU_|ZentuKit_|Qt[56]|CMAKE_HAVE_|CMAKE_INSTALL_|FIND_PACKAGE_)"
        AND NOT variable MATCHES
          "^(HAVE_STDATOMIC$|OPENGL_|PKG_|QT_(ADDITIONAL|FEATURE)_|Vulkan_|XKB_|pkgcfg_|prefix_result$)")
      message(SEND_ERROR "${variable} was added")
    endif()
  endforeach()
endfunction()

# The targets and tests of a folder and those in it.
function(collect property folder result)
  get_property(found DIRECTORY "${folder}" PROPERTY ${property})
  get_property(folders DIRECTORY "${folder}" PROPERTY SUBDIRECTORIES)
  foreach(inner IN LISTS folders)
    collect(${property} "${inner}" more)
    list(APPEND found ${more})
  endforeach()
  set(${result} "${found}" PARENT_SCOPE)
endfunction()

function(check_library)
  collect(TESTS "${ZENTUKIT_SOURCE}" tests)
  collect(BUILDSYSTEM_TARGETS "${ZENTUKIT_SOURCE}" targets)
  list(REMOVE_ITEM targets ZentuKit ZentuKitObjects zentu_wisp zentu_translations)
  if(tests OR targets)
    message(SEND_ERROR "There are too many targets and tests: ${targets} ${tests}")
  endif()
  foreach(property IN ITEMS COMPILE_OPTIONS COMPILE_DEFINITIONS LINK_OPTIONS)
    get_target_property(inherited ZentuKit INTERFACE_${property})
    get_property(here DIRECTORY PROPERTY ${property})
    if(inherited OR here)
      message(SEND_ERROR "A host inherits ${inherited} ${here}")
    endif()
  endforeach()
endfunction()
