// SPDX-License-Identifier: MIT
#include "batch/sample_batches.h"

namespace vt::batch {

const QList<SampleBatch>& SampleBatches() {
  // Each sample is one block. A batch that starts with a comment line reads its first block
  // once; the hexadecimal one ends after its block because its tasks fall due.
  static const QList<SampleBatch> kSamples = {
      {QStringLiteral("InvertHexBytes.SPP"),
       {QStringLiteral("// Flips every byte written as 0xNN: the picture in the other colour."),
        QStringLiteral("set hex prefix as '0x'"), QStringLiteral("set hex suffix as ''"),
        QStringLiteral("while hex in line"), QStringLiteral("      XOR (FF)"),
        QStringLiteral("      then overwrite hex")}},
      {QStringLiteral("AddStaticToConst.SPP"),
       {QStringLiteral("if 'const'                        // each line declaring a constant"),
        QStringLiteral("      then insert (1)'static '")}},
      {QStringLiteral("RemoveProgmem.SPP"),
       {QStringLiteral("if ' PROGMEM'                     // arrays kept in program memory"),
        QStringLiteral("      then remove ' PROGMEM'")}},
  };
  return kSamples;
}

}  // namespace vt::batch
