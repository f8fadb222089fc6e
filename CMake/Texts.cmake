# The texts a person reads: Resources/Texts/<language>.json, compiled into one sorted table.

function(orvane_add_texts TARGET)
  set(table "${CMAKE_CURRENT_BINARY_DIR}/TextTable.generated.cpp")
  file(GLOB texts CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/Resources/Texts/*.json")
  add_custom_command(
    OUTPUT "${table}"
    COMMAND GenerateTexts "${CMAKE_SOURCE_DIR}/Resources/Texts" "${table}"
    DEPENDS GenerateTexts ${texts}
    COMMENT "Collecting the texts of all languages"
    VERBATIM)
  target_sources(${TARGET} PRIVATE "${table}")
  add_custom_target(generated DEPENDS "${table}")
endfunction()
