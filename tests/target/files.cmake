list(APPEND TESSALY_TEST_SOURCES target/target_frame_test.cpp)
