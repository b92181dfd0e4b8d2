list(APPEND TESSALY_TEST_SOURCES
  facade/function_items_test.cpp
  facade/import_export_test.cpp
  facade/global_parameters_test.cpp
  facade/reference_tables_test.cpp
  facade/streamed_export_test.cpp)
