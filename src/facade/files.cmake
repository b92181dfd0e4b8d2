list(APPEND TESSALY_SOURCES
  src/facade/function_item.cpp
  src/facade/multi_lang.cpp
  src/facade/reference_tables.cpp
  src/facade/tessaly_lib_xml.cpp)
