list(APPEND TESSALY_SOURCES src/target/target_item.cpp)
