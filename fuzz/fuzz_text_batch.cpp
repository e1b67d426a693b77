// SPDX-License-Identifier: MIT
// Any bytes as a batch file and the text it edits (split at the first NUL byte): the parser and
// the interpreter must end without a crash, and a block that would never end must be stopped by
// the endless limit. Files the batch saves go to a folder that does not exist, so nothing is
// written anywhere.
#include <QStringList>

#include "batch/batch_line.h"
#include "batch/text_batch.h"
#include "platform/key_poll.h"
#include "platform/messenger.h"

namespace {

/// Answers every message at once and keeps nothing.
class SilentMessenger final : public vt::platform::Messenger {
 public:
  int MessageDlgA(const QString&, const QString&, int, int buttons,
                  vt::platform::DialogType) override {
    return (buttons & vt::platform::Buttons::Ok) ? vt::platform::Answer::Ok
                                                 : vt::platform::Answer::Yes;
  }
  int MyMessageDialog(const QString&, vt::platform::DialogType, int, const QStringList&, int,
                      const QString&) override {
    return vt::platform::Answer::Ok;
  }
  void StatusBarAndLog(const QString&) override {}
  void AppendLog(const QString&) override {}
  void SetLaction(const QString&) override {}
  void HandledExcept(const QString&) override {}
};

QStringList Lines(const QByteArray& bytes, int most) {
  QStringList lines = QString::fromUtf8(bytes).split(QLatin1Char('\n'));
  return lines.mid(0, most);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
  const qsizetype cut = bytes.indexOf('\0');
  const QStringList batch = Lines(cut < 0 ? bytes : bytes.left(cut), 40);
  QStringList text = Lines(cut < 0 ? QByteArray() : bytes.mid(cut + 1), 100);
  for (const QString& line : batch) {
    (void)vt::batch::KeywordPart(line);
    (void)vt::batch::FindKeywords(vt::batch::KeywordPart(line));
  }
  QStringList report;
  vt::batch::HexDelimiters hex;
  SilentMessenger messenger;
  vt::platform::NoKeyPoll escape;
  vt::batch::NoGraphicHost host;
  vt::batch::TextBatchOptions options;
  options.silent = true;
  options.outputFolder = QStringLiteral("/nonexistent-vantorelle-fuzz");
  options.endlessLimit = 20;
  (void)vt::batch::RunTextBatch(batch, text, report, hex, messenger, escape, host, options);
  return 0;
}
