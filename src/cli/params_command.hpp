// tessaly params: the protocols, failure types and device types of the global parameters.
#ifndef TESSALY_SRC_CLI_PARAMS_COMMAND_HPP_
#define TESSALY_SRC_CLI_PARAMS_COMMAND_HPP_

#include <CLI/CLI.hpp>

namespace tessaly::cli {

// Registers the command; its exit status is stored into `status` when it runs.
void AddParamsCommand(CLI::App& app, int& status);

}  // namespace tessaly::cli

#endif  // TESSALY_SRC_CLI_PARAMS_COMMAND_HPP_
