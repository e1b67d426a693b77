// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <optional>

#include "convert/compression.h"
#include "convert/data_text.h"
#include "convert/header_template.h"
#include "convert/pixel_source.h"
#include "convert/reorder.h"
#include "convert/scan_walker.h"
#include "platform/text_buffer.h"
#include "settings/settings.h"

namespace vt::platform {
class KeyPoll;
}

namespace vt::convert {

/// Version text of the generated comments ("Data generated with Vantorelle V01a ").
inline const QString kGeneratedVersionText = QStringLiteral("V01a ");

/// The number of bytes an area of `width` x `height` pixels is expected to give in the current
/// mode. It is one more than the whole bytes in the simple modes, as existing tables rely on.
long long DataByteCount(const settings::Settings& settings, int width, int height);

/// One array to write: the run's settings (already adjusted by the driver: halved GHI for a half
/// export, ORGC from OINT), the picture and the area, the texts that do not come from the
/// settings.
struct ArrayRequest {
  const settings::Settings& settings;
  const PixelSource& source;
  AreaBounds area;  ///< right and bottom exclusive
  platform::KeyPoll& keyPoll;
  QString outputFileName;                 ///< the array takes its name without the extension
  std::optional<QString> headerTemplate;  ///< none when the template file is missing
  QString templateFileName;               ///< named in the missing-template warning
  QString dateText;                       ///< date and time of the export
  HalfExport half = HalfExport::None;
  /// Receives the bytes of a binary or Intel Hex target (no text is written then).
  HexByteTarget* hexTarget = nullptr;
  /// The colour search of the gray and colour modes; it records a colour not found.
  ColorSearch* colors = nullptr;
  /// The rearrangement table that values pass through while dore is on; none: they pass as
  /// they are.
  const ReorderGrid* reorderGrid = nullptr;
  /// The walkers and packers value by value and the writer's plain placing, in place of the
  /// fast walk and the bulk placement: the reference form of the same text.
  bool referencePaths = false;
};

/// What writing the array left.
struct ArrayResult {
  bool completed = false;  ///< false when Escape or a colour fault stopped the walk
  QString warning;         ///< the missing-template warning, for the caller to show
  QString arrayName;
  long long bytes = 0;       ///< values placed in the array
  long long valueCount = 0;  ///< values the walk produced, swallowed ones included
  HeaderText header;         ///< the expanded header (positions, true origin)
  /// With compression: its counters, and whether it saved nothing (the array is then the
  /// data as produced, without pointers).
  std::optional<CompressionCounters> compression;
  bool compressionFailed = false;
};

/// Writes one array into `text`: the header from the template, the comment preamble, the walk
/// of the area through the packers, and the end of the array with its descriptors and closing
/// comments. A stopped walk leaves what was written so far, without the end. A binary or Intel
/// Hex target gets the bytes alone. With ccomp the values pass the compression; when it saves
/// bytes the pointer array and the statistics follow the data array.
ArrayResult WriteArray(const ArrayRequest& request, platform::TextBuffer& text);

}  // namespace vt::convert
