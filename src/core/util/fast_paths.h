// SPDX-License-Identifier: MIT
#pragma once

// The one switch between the fast paths of the conversions and their plain reference forms,
// which give the same output: the environment variable VT_REFERENCE_PATHS. It is read at the
// start of an export or a conversion, and the answer goes down as a field of the request or
// options of each stage; nothing below that start reads it.

namespace vt {

/// Whether `value` (the text of VT_REFERENCE_PATHS; null when it is not set) asks for the
/// reference paths: anything but no text, an empty text or "0".
bool ReferencePathsAskedBy(const char* value);

/// Whether the environment asks for the reference paths (VT_REFERENCE_PATHS, as
/// ReferencePathsAskedBy reads it).
bool ReferencePathsRequested();

}  // namespace vt
