// SPDX-License-Identifier: MIT
#pragma once

// The export report: a small rich-text document written after a successful export, telling
// what was exported, with which settings, and its size. Its data array points to it ("Save
// table and see info file").

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>
#include <optional>

#include "convert/compression.h"
#include "settings/settings.h"

namespace vt::platform {
class FileUse;
class Messenger;
}  // namespace vt::platform

namespace vt::convert {

/// What the report tells besides the settings.
struct ExportReportInfo {
  QString version;   ///< version text of the build
  QString dateText;  ///< date and time of the export
  bool animated = false;
  /// With Autop: the batch file and the count of its occurrences.
  std::optional<std::pair<QString, int>> postProcessing;
  QString outputFileName;  ///< the data file's name, no folder
  QString dataFilePath;    ///< where the data file is written
  QString arrayName;
  bool fullScreen = true;                       ///< the area is the whole canvas
  bool trueOrigin = false;                      ///< the header template holds [&TRUEORG]
  QString xText, yText, rightText, bottomText;  ///< corners, the last pixel inclusive
  int width = 0;
  int height = 0;
  long long bytes = 0;  ///< bytes of the data, uncompressed
  std::optional<CompressionCounters> compression;
  long long dataByteCount = 0;  ///< the expected count D the compression compares with
  /// Animation: per frame its array name, size in bytes and compression ratio text.
  struct Frame {
    QString arrayName;
    long long bytes = 0;
    QString ratio;
  };
  QList<Frame> frames;
  QString clipName;  ///< the clip file, with Ecli
};

/// The paragraphs of the report, in order: title and date, then blocks each closed by a rule of
/// dashes: post-processing (Autop), paging, bit order, output, mode, origin corner,
/// "Postprocessing is ENABLED ", target file, source, tables, area, sizes, and with
/// compression its statistics.
QStringList ExportReportParagraphs(const settings::Settings& settings,
                                   const ExportReportInfo& info);

/// `paragraphs` as an RTF document of plain paragraphs; "\", "{", "}" are escaped and
/// characters beyond ASCII written as \uN.
QByteArray RtfDocument(const QStringList& paragraphs);

/// Writes the report of an export run with `settings` to `path`. A file that another program holds
/// open is refused with " RTF file was opened by another application ! " (title "Error"); a failed
/// write is logged as "Error While Trying to Make Document File !" and leaves the export as it is.
/// Returns true when written.
bool WriteExportReport(platform::Messenger& messenger, platform::FileUse& fileUse,
                       const settings::Settings& settings, const QString& path,
                       const ExportReportInfo& info);

}  // namespace vt::convert
