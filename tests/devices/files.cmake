list(APPEND TESSALY_TEST_SOURCES
  devices/device_data_items_test.cpp
  devices/organe_items_test.cpp
  devices/test_items_test.cpp)
