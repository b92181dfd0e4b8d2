list(APPEND TESSALY_TEST_SOURCES
  cli/cli_support.cpp
  cli/check_command_test.cpp
  cli/convert_command_test.cpp
  cli/edit_commands_test.cpp
  cli/where_used_command_test.cpp
  cli/diff_command_test.cpp
  cli/export_json_command_test.cpp
  cli/info_command_test.cpp
  cli/params_command_test.cpp
  cli/sample_documents_test.cpp
  ../examples/sample_ecu.cpp)
