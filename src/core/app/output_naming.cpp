// SPDX-License-Identifier: MIT
#include "app/output_naming.h"

#include "app/state.h"

namespace vt::app {
namespace {

// Position just after the folder part of `path` (0 when it has none); both separators count.
qsizetype FileNameStart(const QString& path) {
  return std::max(path.lastIndexOf(QLatin1Char('/')), path.lastIndexOf(QLatin1Char('\\'))) + 1;
}

}  // namespace

QString OutputBaseName(const QString& artworkName) {
  const qsizetype dot = artworkName.lastIndexOf(QLatin1Char('.'));
  if (dot < 0) return artworkName;
  QString base = artworkName;
  base.remove(dot, 50);
  return base;
}

QString SourceExtension(const settings::OutputFileSettings& output) {
  if (output.Asmf) return QStringLiteral(".asm");
  if (output.libf) return QLatin1Char('.') + output.fexts;
  if (output.basf) return QStringLiteral(".bas");
  if (output.cfil) return QStringLiteral(".c");
  return QStringLiteral(".h");
}

OutputNames OutputNamesOf(const settings::Settings& settings) {
  OutputNames names;
  names.base = OutputBaseName(settings.output.nbmfn);
  const QString extension = SourceExtension(settings.output);
  names.SourceFileName = names.base + extension;
  names.SourceFileExtUpper = extension.toUpper();
  if (settings.width.DIHec) {
    names.OutputFileName = names.base + QStringLiteral(".hex");
  } else if (settings.width.DHec) {
    names.OutputFileName = names.base + QStringLiteral(".bin");
  } else {
    names.OutputFileName = names.SourceFileName;
  }
  return names;
}

void defineOutputFileName(AppState& state) {
  state.log.Laction = QStringLiteral("Define output filename");
  const OutputNames names = OutputNamesOf(state.settings);
  state.files.SourceFileName = names.SourceFileName;
  state.files.SourceFileExtUpper = names.SourceFileExtUpper;
  state.files.OutputFileName = names.OutputFileName;
}

QString defineOutputFileNameEXT(const QString& panelName, const settings::Settings& settings,
                                bool binaryTab) {
  const qsizetype nameStart = FileNameStart(panelName);
  const QString fileName = panelName.mid(nameStart);
  const qsizetype dot = fileName.lastIndexOf(QLatin1Char('.'));
  const QString extension = dot < 0 ? QString() : fileName.mid(dot);
  if (extension == QStringLiteral(".BMP") || extension == QStringLiteral(".PNG") ||
      extension == QStringLiteral(".JPG")) {
    return panelName;
  }
  QString target;
  if (binaryTab) {
    target = QStringLiteral(".bin");
  } else if (settings.width.DIHec) {
    target = QStringLiteral(".hex");
  } else {
    target = SourceExtension(settings.output);
  }
  return panelName.left(nameStart) + OutputBaseName(settings.output.nbmfn) + target;
}

QString CleanOutputFileName(const QString& fileName) {
  QString name = fileName;
  name.remove(QLatin1Char('-'));
  for (qsizetype open = name.indexOf(QLatin1Char('[')); open >= 0;
       open = name.indexOf(QLatin1Char('['), open)) {
    const qsizetype close = name.indexOf(QLatin1Char(']'), open);
    if (close < 0) break;
    name.remove(open, close - open + 1);
  }
  return name;
}

}  // namespace vt::app
