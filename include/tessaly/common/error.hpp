// Errors of the library: one exception type carrying number, source and description, and the
// pending-error state that trapped readers record into instead of throwing.
//
// Thread safety: the pending-error state is per thread (see Err()); an Error object is an
// immutable value.
#ifndef TESSALY_COMMON_ERROR_HPP_
#define TESSALY_COMMON_ERROR_HPP_

#include <cstdint>
#include <stdexcept>
#include <string>

namespace tessaly {

// Error numbers used across the library. The platform numbers keep the values and texts that
// hosts of the original component platform know.
namespace errc {
inline constexpr std::int32_t kModel = 1;           // refusals of the model, bad documents
inline constexpr std::int32_t kInvalidCall = 5;     // "Invalid procedure call or argument"
inline constexpr std::int32_t kOverflow = 6;        // "Overflow"
inline constexpr std::int32_t kSubscript = 9;       // "Subscript out of range"
inline constexpr std::int32_t kTypeMismatch = 13;   // "Type mismatch"
inline constexpr std::int32_t kObjectNotSet = 91;   // "Object variable or With block variable not set"
inline constexpr std::int32_t kMissingName = 100;   // mandatory name or type missing in a reader
inline constexpr std::int32_t kDuplicateKey = 457;  // "This key is already associated ..."
}  // namespace errc

// Source given to errors whose raiser names none (collection and conversion errors).
inline constexpr const char* kLibrarySource = "Tessaly";

// The description the platform gives to one of its own error numbers, or "" for other numbers.
const char* PlatformDescription(std::int32_t number) noexcept;

// The one exception type of the library. what() is the description.
class Error : public std::runtime_error {
 public:
  Error(std::int32_t number, std::string source, std::string description);

  std::int32_t Number() const noexcept { return number_; }
  const std::string& Source() const noexcept { return source_; }
  const std::string& Description() const noexcept { return description_; }

 private:
  std::int32_t number_;
  std::string source_;
  std::string description_;
};

// Throws Error(number, source, description).
[[noreturn]] void Raise(std::int32_t number, std::string source, std::string description);

// Throws one of the platform errors (5, 6, 9, 13, 91, 457) with its standard description.
[[noreturn]] void RaisePlatform(std::int32_t number, std::string source = kLibrarySource);

// The pending error of a trapped reader: number 0 means no error. Readers record errors here
// instead of letting them escape, and their collections decide from the number whether the
// item is kept or dropped.
class ErrorState {
 public:
  // Records `error` as the pending error, replacing any earlier one.
  void Raise(const Error& error);
  void Raise(std::int32_t number, std::string source, std::string description);
  // Back to "no error".
  void Clear() noexcept;

  std::int32_t Number() const noexcept { return number_; }
  const std::string& Source() const noexcept { return source_; }
  const std::string& Description() const noexcept { return description_; }
  bool Pending() const noexcept { return number_ != 0; }

  // The pending error as an exception object. REQUIRES: Pending().
  Error ToError() const;

 private:
  std::int32_t number_ = 0;
  std::string source_;
  std::string description_;
};

// The pending-error state of the calling thread. Each thread has its own, so separate
// documents loaded on separate threads never see each other's errors.
ErrorState& Err() noexcept;

// Runs `step`; an Error it throws is recorded as the pending error instead of propagating
// ("resume with the next statement"). Returns true when the step completed.
template <class Step>
bool Trap(Step&& step) {
  try {
    step();
    return true;
  } catch (const Error& error) {
    Err().Raise(error);
    return false;
  }
}

}  // namespace tessaly

#endif  // TESSALY_COMMON_ERROR_HPP_
