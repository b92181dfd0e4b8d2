#include "ecu_generator.hpp"
