// SPDX-License-Identifier: MIT
// Times a 20-line text batch over a 10,000-line array: every value between the hex prefix and
// suffix goes through fifteen bit operations that leave it flipped (XOR FF) and is written back.
// Prints the fastest of a few rounds with the report per line and without it (a folder run's
// silent mode), and checks the result. `--smoke` runs one small round.
#include <QElapsedTimer>
#include <QTextStream>
#include <cstring>

#include "batch/text_batch.h"
#include "platform/key_poll.h"
#include "platform/messenger.h"

namespace {

/// Keeps nothing: the benchmark times the interpreter, not a log.
class NullMessenger final : public vt::platform::Messenger {
 public:
  int MessageDlgA(const QString&, const QString&, int, int, vt::platform::DialogType) override {
    return 1;
  }
  int MyMessageDialog(const QString&, vt::platform::DialogType, int, const QStringList&, int,
                      const QString&) override {
    return 1;
  }
  void StatusBarAndLog(const QString&) override {}
  void AppendLog(const QString&) override {}
  void SetLaction(const QString&) override {}
  void HandledExcept(const QString&) override {}
};

const QStringList kBatch = {
    "// Benchmark: fifteen operations that leave each value flipped",
    "set hex prefix as '0x'",
    "set hex suffix as ''",
    "while hex in line",
    "      XOR (FF)",
    "      rotate bits to left (3)",
    "      rotate bits to right (3)",
    "      toggle bit (0)",
    "      toggle bit (0)",
    "      toggle bit (5)",
    "      toggle bit (5)",
    "      ANDL (FF)",
    "      ORL (00)",
    "      XOR (0F)",
    "      XOR (0F)",
    "      XOR (F0)",
    "      XOR (F0)",
    "      XOR (AA)",
    "      XOR (AA)",
    "      then overwrite hex",
};

QString Line(int row, bool flipped) {
  QString line;
  for (int i = 0; i < 16; ++i) {
    const int value = ((row * 16 + i) * 37) & 0xFF;
    line += QStringLiteral(" 0x%1 ,")
                .arg(flipped ? value ^ 0xFF : value, 2, 16, QLatin1Char('0'))
                .toUpper()
                .replace(QStringLiteral("0X"), QStringLiteral("0x"));
  }
  return line;
}

}  // namespace

int main(int argc, char* argv[]) {
  const bool smoke = argc > 1 && std::strcmp(argv[1], "--smoke") == 0;
  const int lines = smoke ? 200 : 10000;
  const int rounds = smoke ? 1 : 5;
  QStringList text, expected;
  for (int r = 0; r < lines; ++r) {
    text << Line(r, false);
    expected << Line(r, true);
  }
  QTextStream out(stdout);
  out << "Text batch: " << kBatch.size() << "-line batch over " << lines << " lines of 16 values\n";
  for (const bool silent : {false, true}) {
    qint64 best = -1;
    for (int round = 0; round < rounds; ++round) {
      QStringList work = text;
      QStringList report;
      vt::batch::HexDelimiters hex;
      NullMessenger messenger;
      vt::platform::NoKeyPoll escape;
      vt::batch::NoGraphicHost host;
      vt::batch::TextBatchOptions options;
      options.silent = silent;
      options.endlessLimit = 1000;
      QElapsedTimer timer;
      timer.start();
      const vt::batch::TextBatchResult result =
          vt::batch::RunTextBatch(kBatch, work, report, hex, messenger, escape, host, options);
      const qint64 ns = timer.nsecsElapsed();
      if (work != expected || result.endless || result.aborted) {
        out << "wrong result\n";
        return 1;
      }
      if (best < 0 || ns < best) best = ns;
    }
    out << (silent ? "  silent (folder run): " : "  with the report:     ")
        << QString::number(best / 1e6, 'f', 1) << " ms\n";
  }
  return 0;
}
