list(APPEND TESSALY_SOURCES
  src/screens/button_items.cpp
  src/screens/category_items.cpp
  src/screens/display_items.cpp
  src/screens/display_references.cpp
  src/screens/label_items.cpp
  src/screens/layout_xml.cpp
  src/screens/range_items.cpp
  src/screens/scenario_items.cpp
  src/screens/screen_items.cpp
  src/screens/screen_links.cpp)
