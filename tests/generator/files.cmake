list(APPEND TESSALY_TEST_SOURCES generator/ecu_generator_test.cpp generator/load_speedups_test.cpp
     generator/benchmark_phases_test.cpp)
