# Warnings for our own code. Qt's headers are system headers, so they are not judged by them.
function(zentu_warnings target)
  if(NOT ZENTU_IS_TOP_LEVEL)
    return() # A host may treat the warnings of its build as errors.
  endif()
  target_compile_options(${target} PRIVATE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsuggest-override -Wold-style-cast
    # QSKIP() takes more arguments, which nobody gives.
    $<$<CXX_COMPILER_ID:Clang>:-Wno-gnu-zero-variadic-macro-arguments>
    $<$<BOOL:${ZENTU_WARNINGS_AS_ERRORS}>:-Werror>)
  target_compile_definitions(${target} PRIVATE
    QT_DEPRECATED_WARNINGS
    QT_DISABLE_DEPRECATED_BEFORE=0x050F00
    QT_NO_CAST_FROM_ASCII
    QT_NO_CAST_TO_ASCII
    QT_NO_CAST_FROM_BYTEARRAY
    QT_NO_URL_CAST_FROM_STRING
    QT_NO_FOREACH
    QT_NO_KEYWORDS)
endfunction()
