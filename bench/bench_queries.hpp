// Timing of the target's where-used queries and referential edits on a loaded ECU.
#ifndef TESSALY_BENCH_BENCH_QUERIES_HPP_
#define TESSALY_BENCH_BENCH_QUERIES_HPP_

#include <string>
#include <vector>

namespace tessaly {
class TargetItem;
}

namespace tessaly::bench {

struct QueryTiming {
  std::string name;    // the operation, and which case ("most sent", "unknown name")
  double seconds = 0;  // wall-clock time
  double cpu = 0;      // processor time of the process over the same interval
};

// Runs each query (the best of a few runs) and then each edit (once; the edits change the
// target) on objects picked from the middle of the document, and on the most used request for
// the operations whose cost grows with the number of users. Throws std::runtime_error when an
// operation does not have its effect.
std::vector<QueryTiming> TimeQueries(TargetItem& target);

}  // namespace tessaly::bench

#endif  // TESSALY_BENCH_BENCH_QUERIES_HPP_
