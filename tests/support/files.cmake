list(APPEND TESSALY_TEST_SOURCES support/test_support.cpp)
