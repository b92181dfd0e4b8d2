list(APPEND TESSALY_TEST_SOURCES
  target/target_frame_test.cpp
  target/cross_reference_queries_test.cpp
  target/cross_reference_scale_test.cpp
  target/referential_deletes_test.cpp
  target/referential_renames_test.cpp)
