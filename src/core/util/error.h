// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <stdexcept>
#include <utility>
#include <variant>

namespace vt {

/// What went wrong with a file, a script or the environment, with where it happened.
/// `line` and `column` are 1-based; 0 means "not tied to a position".
struct Error {
  /// Usage: the request itself is malformed (an unknown name, a value of the wrong form), as
  /// opposed to a request that is understood and refused.
  enum class Kind { Io, Parse, Limit, Refused, Usage, Internal };
  Kind kind = Kind::Internal;
  QString path;
  int line = 0;
  int column = 0;
  QString message;

  /// "path:line:column: message", leaving out the parts that are unknown.
  QString ToString() const;
};

/// The one exception type thrown for rare environment failures deep down (I/O, allocation
/// limits). It is caught at the command boundary and in the command-line runner.
class Failure : public std::runtime_error {
 public:
  explicit Failure(Error error);
  const Error& error() const { return error_; }

 private:
  Error error_;
};

/// A value or the error that prevented it.
template <typename T>
class Result {
 public:
  Result(T value) : data_(std::move(value)) {}
  Result(Error error) : data_(std::move(error)) {}
  bool ok() const { return std::holds_alternative<T>(data_); }
  explicit operator bool() const { return ok(); }
  const T& value() const& { return std::get<T>(data_); }
  T& value() & { return std::get<T>(data_); }
  T&& value() && { return std::get<T>(std::move(data_)); }
  const Error& error() const { return std::get<Error>(data_); }

 private:
  std::variant<T, Error> data_;
};

}  // namespace vt
