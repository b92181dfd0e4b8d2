list(APPEND TESSALY_SOURCES
  src/data/byte_string.cpp
  src/data/comment_xml.cpp
  src/data/data_items.cpp
  src/data/data_liste_items.cpp
  src/data/data_position_items.cpp
  src/data/request_items.cpp)
