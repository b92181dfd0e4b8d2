list(APPEND TESSALY_TEST_SOURCES
  cli/cli_support.cpp
  cli/check_command_test.cpp
  cli/convert_command_test.cpp
  cli/info_command_test.cpp
  cli/params_command_test.cpp
  cli/sample_documents_test.cpp
  ../examples/sample_ecu.cpp)
