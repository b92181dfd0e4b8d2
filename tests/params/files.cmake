list(APPEND TESSALY_TEST_SOURCES
  params/auto_ident_items_test.cpp
  params/params_round_trip_test.cpp
  params/target_param_item_test.cpp)
