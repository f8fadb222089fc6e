# What each code point folds to in a search, worked out by ICU during the build and kept as one compact table.

function(orvane_add_fold_table TARGET)
  set(table "${CMAKE_CURRENT_BINARY_DIR}/FoldTable.generated.cpp")
  add_custom_command(
    OUTPUT "${table}"
    COMMAND GenerateFoldTable "${table}"
    DEPENDS GenerateFoldTable
    COMMENT "Working out the table of search folding"
    VERBATIM)
  target_sources(${TARGET} PRIVATE "${table}")
endfunction()
