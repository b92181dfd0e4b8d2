list(APPEND TESSALY_TEST_SOURCES
  cli/cli_support.cpp
  cli/convert_command_test.cpp
  cli/params_command_test.cpp)
