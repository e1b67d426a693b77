// SPDX-License-Identifier: MIT
#pragma once

// The sample batches a first run writes into the batch folder, so that a new user has working
// examples to run, read and copy.

#include <QList>
#include <QString>
#include <QStringList>

namespace vt::batch {

/// One sample batch file.
struct SampleBatch {
  QString fileName;   ///< "InvertHexBytes.SPP"
  QStringList lines;  ///< the file's lines, written with CR LF
};

/// The samples: "InvertHexBytes.SPP" flips every byte written as 0xNN (XOR FF),
/// "AddStaticToConst.SPP" puts "static " before each line holding "const", and
/// "RemoveProgmem.SPP" takes " PROGMEM" out of the array declarations.
const QList<SampleBatch>& SampleBatches();

}  // namespace vt::batch
