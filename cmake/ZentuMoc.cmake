# moc by rules of our own. AUTOMOC takes the Qt that was found before its folder was entered, adds its object
# after those of an object library have been counted, and takes steps of its own in each target.

function(zentu_moc_rule target source output)
  get_filename_component(source "${source}" ABSOLUTE)
  set(folders "$<REMOVE_DUPLICATES:$<TARGET_PROPERTY:${target},INCLUDE_DIRECTORIES>>")
  set(definitions "$<TARGET_PROPERTY:${target},COMPILE_DEFINITIONS>")
  # Removed first: moc reads what the source includes, and so would name its own output among the files
  # that this depends on.
  add_custom_command(OUTPUT "${output}"
    COMMAND "${CMAKE_COMMAND}" -E rm -f "${output}"
    COMMAND ${zentu_qt}::moc --no-notes --output-dep-file --dep-file-path "${output}.d"
      "$<$<BOOL:${folders}>:-I$<JOIN:${folders},;-I>>"
      "$<$<BOOL:${definitions}>:-D$<JOIN:${definitions},;-D>>"
      -o "${output}" "${source}"
    DEPENDS "${source}"
    DEPFILE "${output}.d"
    COMMENT "Running moc on ${source}"
    COMMAND_EXPAND_LISTS VERBATIM)
endfunction()

# Compiles what moc makes of the headers among the sources of a target, in one piece.
function(zentu_moc target)
  get_target_property(headers ${target} SOURCES)
  list(FILTER headers INCLUDE REGEX "\\.h$")
  set(folder "${CMAKE_CURRENT_BINARY_DIR}/moc/${target}")
  set(outputs)
  set(text)
  foreach(header IN LISTS headers)
    get_filename_component(name "${header}" NAME_WE)
    zentu_moc_rule(${target} "${header}" "${folder}/moc_${name}.cpp")
    list(APPEND outputs "${folder}/moc_${name}.cpp")
    string(APPEND text "#include \"moc_${name}.cpp\"\n")
  endforeach()
  file(CONFIGURE OUTPUT "${folder}/mocs.cpp" CONTENT "${text}" @ONLY)
  set_source_files_properties(${outputs} PROPERTIES HEADER_FILE_ONLY ON)
  target_sources(${target} PRIVATE "${folder}/mocs.cpp" ${outputs})
endfunction()

# For a source file NAME.cpp that ends with #include "NAME.moc".
function(zentu_moc_in_source target source)
  get_filename_component(name "${source}" NAME_WE)
  set(folder "${CMAKE_CURRENT_BINARY_DIR}/moc/${target}")
  zentu_moc_rule(${target} "${source}" "${folder}/${name}.moc")
  target_include_directories(${target} PRIVATE "${folder}")
  target_sources(${target} PRIVATE "${folder}/${name}.moc")
endfunction()
