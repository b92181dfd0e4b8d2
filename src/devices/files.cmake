list(APPEND TESSALY_SOURCES
  src/devices/device_data_items.cpp
  src/devices/organe_items.cpp
  src/devices/test_items.cpp)
