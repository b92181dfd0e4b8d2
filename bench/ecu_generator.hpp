// Synthetic ECU documents for tests and benchmarks: a seeded generator that builds a complete ECU
// description (data of every shape with value lists, requests with their parameters and reply
// data, devices with data links and failure tests, screen categories with labels, displays,
// thresholds, buttons and scenarios, auto-identifications) in proportions close to those of a
// real engine ECU, and writes it the way the library writes documents.
//
// The same seed and size always give the same bytes. The document loads without any element
// being dropped or repaired, and saving it again after loading gives the same bytes.
#ifndef TESSALY_BENCH_ECU_GENERATOR_HPP_
#define TESSALY_BENCH_ECU_GENERATOR_HPP_

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace tessaly {
class TessalyLibXml;
class TargetItem;
}  // namespace tessaly

namespace tessaly::bench {

// The document is built from blocks, each one functional area of the ECU (its data, the
// requests that carry them, its devices and its screens). Each block's content depends only on
// the seed and the block's number, so a larger document starts with the blocks of a smaller one.
struct EcuShape {
  std::size_t blocks = 1;
  // One screen category per this many blocks.
  std::size_t blocksPerCategory = 6;
};

// Fills a new active target of `facade` with the generated ECU (the facade's functions table
// receives the ECU's function). Returns the target.
std::shared_ptr<TargetItem> BuildEcu(TessalyLibXml& facade, std::uint64_t seed, const EcuShape& shape);

// The generated document for `seed` and `shape`, as UTF-8 text in the form the library writes.
std::string GenerateEcuDocument(std::uint64_t seed, const EcuShape& shape);

// The generated document for `seed` whose size is close to `approx_bytes` (within a few per
// cent above a few hundred kilobytes; never less than one block, about 40 kB).
std::string GenerateEcuDocument(std::uint64_t seed, std::size_t approx_bytes);

// The number of blocks GenerateEcuDocument(seed, approx_bytes) uses.
std::size_t BlocksForSize(std::uint64_t seed, std::size_t approx_bytes);

}  // namespace tessaly::bench

#endif  // TESSALY_BENCH_ECU_GENERATOR_HPP_
