#pragma once

#include <string>
#include <utility>
#include <variant>

/// All of the program, in layers; docs/architecture.md has the picture.
namespace velmara {

/// What went wrong, in words a user can read: lower case, no full stop.
struct Error {
  /// The reason.
  std::string message;
};

/// A value or the reason why there is none. Asking for the one that is not there is a fault of the
/// caller (std::bad_variant_access).
template <typename T>
class [[nodiscard]] Result {
 public:
  /// Success with a value, or failure with a reason; implicit, so that both can be returned as they
  /// are.
  Result(T value) : content_(std::in_place_index<0>, std::move(value)) {}  // NOLINT(*-explicit-*)
  Result(Error error) : content_(std::in_place_index<1>, std::move(error)) {}  // NOLINT

  /// Whether there is a value.
  bool ok() const { return content_.index() == 0; }
  explicit operator bool() const { return ok(); }

  /// The value; only where there is one.
  const T& value() const& { return std::get<0>(content_); }
  T& value() & { return std::get<0>(content_); }
  T&& value() && { return std::get<0>(std::move(content_)); }
  const T* operator->() const { return &value(); }
  const T& operator*() const& { return value(); }
  /// The reason; only where there is no value.
  const std::string& error() const { return std::get<1>(content_).message; }

 private:
  std::variant<T, Error> content_;
};

/// The Result of an operation that gives nothing back but its success.
struct Done {};
using Status = Result<Done>;

}  // namespace velmara
