list(APPEND TESSALY_SOURCES
  src/params/auto_ident_items.cpp
  src/params/target_param_item.cpp)
