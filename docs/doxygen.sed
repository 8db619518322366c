# What Doxygen needs to be told of pages that are written for a reader of the files.
# A picture is found by the end of its path, in which .. has no place.
s,](\(\.\./\)*\(docs/\)\{0\,1\}images/,](images/,g
# A header leads to its page, whose name doubles underscores.
s,](\(include\|wisp\)/\([a-z]*\)_\([a-z]*\)\.h),](\2__\3_8h_source.html),g
s,](\(include\|wisp\)/\([a-z]*\)\.h),](\2_8h_source.html),g
# A heading that is led to needs a name.
s,^## Use it in a project$,& {#use-it-in-a-project},
