list(APPEND TESSALY_TEST_SOURCES
  preview/colour_test.cpp
  preview/format_test.cpp
  preview/html_test.cpp
  preview/layout_test.cpp
  preview/page_test.cpp
  preview/browser_test.cpp
  preview/command_test.cpp)
