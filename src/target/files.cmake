list(APPEND TESSALY_SOURCES
  src/target/cross_references.cpp
  src/target/reporting.cpp
  src/target/target_item.cpp)
