list(APPEND TESSALY_TEST_SOURCES
  data/byte_string_test.cpp
  data/data_items_test.cpp
  data/data_liste_items_test.cpp
  data/data_document_test.cpp
  data/data_position_items_test.cpp
  data/data_round_trip_test.cpp
  data/request_items_test.cpp)
