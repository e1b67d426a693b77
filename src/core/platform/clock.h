// SPDX-License-Identifier: MIT
#pragma once

#include <QDateTime>

namespace vt::platform {

/// The wall clock, injected so that generated dates and backup names are reproducible in tests.
class Clock {
 public:
  virtual ~Clock() = default;
  virtual QDateTime Now() const = 0;
};

/// The real clock.
class SystemClock final : public Clock {
 public:
  QDateTime Now() const override { return QDateTime::currentDateTime(); }
};

/// A clock that always answers the same instant.
class FixedClock final : public Clock {
 public:
  explicit FixedClock(QDateTime at) : at_(std::move(at)) {}
  QDateTime Now() const override { return at_; }

 private:
  QDateTime at_;
};

}  // namespace vt::platform
