list(APPEND TESSALY_TEST_SOURCES
  screens/button_items_test.cpp
  screens/category_items_test.cpp
  screens/display_items_test.cpp
  screens/label_items_test.cpp
  screens/range_items_test.cpp
  screens/scenario_items_test.cpp
  screens/screen_items_test.cpp
  screens/screens_document_test.cpp)
