// SPDX-License-Identifier: MIT
#include "util/fast_paths.h"

#include <gtest/gtest.h>

namespace vt {
namespace {

TEST(FastPaths, AnyTextButEmptyOrZeroAsksForTheReferencePaths) {
  const struct {
    const char* value;
    bool asked;
  } cases[] = {
      {nullptr, false}, {"", false},  {"0", false}, {"1", true},
      {"yes", true},    {"00", true}, {" ", true},  {"false", true},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(ReferencePathsAskedBy(c.value), c.asked) << (c.value ? c.value : "(not set)");
  }
}

}  // namespace
}  // namespace vt
