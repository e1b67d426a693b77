// SPDX-License-Identifier: MIT
#pragma once

namespace vt::platform {

/// Polls the keyboard for Escape, which stops long loops.
class KeyPoll {
 public:
  virtual ~KeyPoll() = default;
  /// True when Escape was pressed since the last call.
  virtual bool EscapePressed() = 0;
  /// False when EscapePressed can never report a press: long loops may then skip the poll.
  virtual bool CanReportPress() const { return true; }
};

/// A key poll that never reports Escape: headless runs and tests.
class NoKeyPoll final : public KeyPoll {
 public:
  bool EscapePressed() override { return false; }
  bool CanReportPress() const override { return false; }
};

}  // namespace vt::platform
