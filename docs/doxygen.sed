# What Doxygen needs to be told of pages that are written for a reader of the files.
# A picture is found by the end of its path, in which .. has no place.
s,](\(\.\./\)*\(docs/\)\{0\,1\}images/,](images/,g
# A header leads to its page, whose name doubles underscores.
s,](\(include\|wisp\)/\([a-z]*\)_\([a-z]*\)\.h),](\2__\3_8h_source.html),g
s,](\(include\|wisp\)/\([a-z]*\)\.h),](\2_8h_source.html),g
# Headings that are led to need names, which are found without their page.
s,^## Use it in a project$,& {#use-it-in-a-project},
s,^## Messages$,& {#messages},
s,^## A plug-in that is unloaded$,& {#a-plug-in-that-is-unloaded},
s,^## Reading a trace$,& {#reading-a-trace},
s,](\([^)]*\.md\)#\([a-z-]*\)),](#\2),g
