# A program has one Qt. What CMake says of one with two does not say what to do.
cmake_policy(PUSH)
cmake_policy(VERSION 3.20)

# All that a target links, also by way of others.
function(zentu_linked target result)
  set(linked)
  get_target_property(rest ${target} LINK_LIBRARIES)
  while(rest)
    list(POP_FRONT rest library)
    if(NOT library IN_LIST linked)
      list(APPEND linked "${library}")
      if(TARGET "${library}" AND NOT library MATCHES "^(Qt[56]|ZentuKit)::")
        get_target_property(more "${library}" INTERFACE_LINK_LIBRARIES)
        list(APPEND rest ${more})
      endif()
    endif()
  endwhile()
  set(${result} "${linked}" PARENT_SCOPE)
endfunction()

# Looks at what is built in a folder and those in it, once they are done.
function(zentu_find_mixed folder qt other_qt advice)
  get_property(targets DIRECTORY "${folder}" PROPERTY BUILDSYSTEM_TARGETS)
  foreach(target IN LISTS targets)
    zentu_linked(${target} linked)
    if("ZentuKit::ZentuKit" IN_LIST linked AND linked MATCHES "(^|;)Qt${other_qt}::")
      message(FATAL_ERROR
        "${target} links Qt ${other_qt} and ZentuKit::ZentuKit, which is for Qt ${qt} here: ${advice}.")
    endif()
  endforeach()
  get_property(folders DIRECTORY "${folder}" PROPERTY SUBDIRECTORIES)
  foreach(inner IN LISTS folders)
    zentu_find_mixed("${inner}" ${qt} ${other_qt} "${advice}")
  endforeach()
endfunction()

cmake_policy(POP)
