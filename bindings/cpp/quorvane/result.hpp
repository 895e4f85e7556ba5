// What a checked call answers: nothing or a value, or else the failure, which can be thrown.
#pragma once

#include <quorvane/quorvane.h>

#include <array>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

namespace quorvane {

/// What was wrong with a call. All but kStatus and kMemory are found before the library is called.
enum class Cause {
  kSize,         ///< a frame that the function does not take
  kPitch,        ///< lines that lie closer than they are long, or that end within a group of pixels
  kDestination,  ///< too few bytes to write
  kSource,       ///< too few bytes to read
  kOverlap,      ///< buffers that overlap in a function that does not work in place
  kArgument,     ///< a selector, a correction or a number that the function does not serve
  kMemory,       ///< no memory
  kStatus,       ///< the library's own refusal
};

struct Failure {
  Cause cause;
  std::uint32_t
      status;  ///< what the library said, or would have said; QVN_E_UNCLASSIFIED where it has no word
  std::string message;  ///< one sentence: the function, what was expected, what was found
};

/// The library's text for a status.
inline std::string status_text(std::uint32_t status) {
  std::array<char, 256> text{};
  QVN_GetErrorInfo(status, text.data(), static_cast<std::uint32_t>(text.size() - 1));
  return text.data();
}

class Error : public std::runtime_error {
 public:
  explicit Error(const Failure& failure)
      : std::runtime_error(failure.message), cause_(failure.cause), status_(failure.status) {}

  Cause cause() const { return cause_; }
  std::uint32_t status() const { return status_; }

 private:
  Cause cause_;
  std::uint32_t status_;
};

/// A value or a failure.
template <class T>
class [[nodiscard]] Result {
 public:
  Result(T value) : value_(std::move(value)) {}              // NOLINT(google-explicit-constructor)
  Result(Failure failure) : failure_(std::move(failure)) {}  // NOLINT(google-explicit-constructor)

  explicit operator bool() const { return value_.has_value(); }
  const Failure& failure() const { return failure_; }

  /// Throws Error where there is none.
  T& value() & {
    check();
    return *value_;
  }
  T&& value() && {
    check();
    return std::move(*value_);
  }

 private:
  void check() const {
    if (!value_) {
      throw Error(failure_);
    }
  }

  std::optional<T> value_;
  Failure failure_{};
};

template <>
class [[nodiscard]] Result<void> {
 public:
  Result() = default;
  Result(Failure failure) : failure_(std::move(failure)) {}  // NOLINT(google-explicit-constructor)

  explicit operator bool() const { return !failure_.has_value(); }
  const Failure& failure() const { return *failure_; }

  /// Throws Error for a failure.
  void value() const {
    if (failure_) {
      throw Error(*failure_);
    }
  }

 private:
  std::optional<Failure> failure_;
};

namespace detail {

inline Failure refusal(Cause cause, std::uint32_t status, std::string_view entry, const std::string& text) {
  return {cause, status, std::string(entry) + ": " + text};
}

inline Result<void> result_of(std::string_view entry, std::uint32_t status) {
  if (status == QVN_OK) {
    return {};
  }
  return refusal(status == QVN_E_OUT_OF_MEMORY ? Cause::kMemory : Cause::kStatus, status, entry,
                 status_text(status));
}

}  // namespace detail
}  // namespace quorvane
