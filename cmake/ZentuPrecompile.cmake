# Precompiled headers, in gcc's optimised build alone: in all others each file shows that it includes what it
# uses. ccache, or whatever else launches the compiler, saves more and cannot keep one.

set(zentu_precompiles OFF)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_BUILD_TYPE STREQUAL "Release"
    AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(zentu_precompiles ON)
endif()

# Makes a target whose precompiled header the programs of a folder share.
function(zentu_precompiled name)
  cmake_parse_arguments(arg "" "" "HEADERS;LIBRARIES;OPTIONS" ${ARGN})
  if(NOT zentu_precompiles)
    return()
  endif()
  set(source "${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp")
  file(CONFIGURE OUTPUT "${source}" CONTENT "int main()\n{\n}\n")
  add_executable(${name} EXCLUDE_FROM_ALL "${source}")
  target_link_libraries(${name} PRIVATE ${arg_LIBRARIES})
  target_compile_options(${name} PRIVATE ${arg_OPTIONS})
  zentu_warnings(${name})
  target_precompile_headers(${name} PRIVATE ${arg_HEADERS})
endfunction()

# Precompiles headers for one target.
function(zentu_precompile target)
  if(zentu_precompiles)
    target_precompile_headers(${target} PRIVATE ${ARGN})
  endif()
endfunction()

function(zentu_use_precompiled target name)
  if(TARGET ${name})
    target_precompile_headers(${target} REUSE_FROM ${name})
  endif()
endfunction()
