list(APPEND TESSALY_TEST_SOURCES
  common/character_references_test.cpp
  common/convert_test.cpp
  common/keyed_collection_test.cpp
  common/xml_util_test.cpp
  common/xml_text_writer_test.cpp)
