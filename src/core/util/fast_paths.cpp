// SPDX-License-Identifier: MIT
#include "util/fast_paths.h"

#include <cstdlib>
#include <cstring>

namespace vt {

bool ReferencePathsAskedBy(const char* value) {
  return value != nullptr && *value != '\0' && std::strcmp(value, "0") != 0;
}

bool ReferencePathsRequested() { return ReferencePathsAskedBy(std::getenv("VT_REFERENCE_PATHS")); }

}  // namespace vt
