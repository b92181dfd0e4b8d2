#include "tessaly/common/error.hpp"

#include <utility>

namespace tessaly {

const char* PlatformDescription(std::int32_t number) noexcept {
  switch (number) {
    case errc::kInvalidCall: return "Invalid procedure call or argument";
    case errc::kOverflow: return "Overflow";
    case errc::kSubscript: return "Subscript out of range";
    case errc::kTypeMismatch: return "Type mismatch";
    case errc::kObjectNotSet: return "Object variable or With block variable not set";
    case errc::kDuplicateKey: return "This key is already associated with an element of this collection";
    default: return "";
  }
}

Error::Error(std::int32_t number, std::string source, std::string description)
    : std::runtime_error(description),
      number_(number),
      source_(std::move(source)),
      description_(std::move(description)) {}

void Raise(std::int32_t number, std::string source, std::string description) {
  throw Error(number, std::move(source), std::move(description));
}

void RaisePlatform(std::int32_t number, std::string source) {
  throw Error(number, std::move(source), PlatformDescription(number));
}

void ErrorState::Raise(const Error& error) {
  number_ = error.Number();
  source_ = error.Source();
  description_ = error.Description();
}

void ErrorState::Raise(std::int32_t number, std::string source, std::string description) {
  number_ = number;
  source_ = std::move(source);
  description_ = std::move(description);
}

void ErrorState::Clear() noexcept {
  number_ = 0;
  source_.clear();
  description_.clear();
}

Error ErrorState::ToError() const { return Error(number_, source_, description_); }

ErrorState& Err() noexcept {
  thread_local ErrorState state;
  return state;
}

}  // namespace tessaly
