# What the terminal needs to know of each code point, taken from the Unicode character database during the build.

find_path(UNICODE_DATA UnicodeData.txt PATHS /usr/share/unicode NO_DEFAULT_PATH REQUIRED
          DOC "Folder of the Unicode character database (Debian's package unicode-data)")

function(orvane_add_unicode_table TARGET)
  set(table "${CMAKE_CURRENT_BINARY_DIR}/UnicodeTable.generated.cpp")
  add_custom_command(
    OUTPUT "${table}"
    COMMAND GenerateUnicodeTables "${UNICODE_DATA}" "${table}"
    DEPENDS GenerateUnicodeTables "${UNICODE_DATA}/UnicodeData.txt"
    COMMENT "Working out the table of character widths"
    VERBATIM)
  target_sources(${TARGET} PRIVATE "${table}")
endfunction()
