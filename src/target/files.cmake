list(APPEND TESSALY_SOURCES
  src/target/reporting.cpp
  src/target/target_item.cpp)
