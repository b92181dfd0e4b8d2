// PLACEHOLDER: the performance work replaces this with the synthetic ECU generator.
#ifndef TESSALY_BENCH_ECU_GENERATOR_HPP_
#define TESSALY_BENCH_ECU_GENERATOR_HPP_
namespace tessaly::bench {}
#endif
