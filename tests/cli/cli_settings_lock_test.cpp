// SPDX-License-Identifier: MIT
// Runs of the real command-line tool that change one settings file at the same time.

#include <gtest/gtest.h>

#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>
#include <memory>
#include <vector>

#include "settings/ini_document.h"
#include "support/temp_folders.h"

namespace vt::cli {
namespace {

TEST(CliSettingsLock, EightRunsSettingKeysAtOnceAllLand) {
  QTemporaryDir dir;
  const QString file = dir.filePath(QStringLiteral("shared.LCD"));
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  environment.insert(QStringLiteral("HOME"), dir.path());
  environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
  // The file exists first, so that every run reads, changes and writes it.
  {
    QProcess create;
    create.setProcessEnvironment(environment);
    create.start(QStringLiteral(VT_CLI_BINARY),
                 {QStringLiteral("settings"), QStringLiteral("--settings"), file,
                  QStringLiteral("get"), QStringLiteral("GWI")});
    ASSERT_TRUE(create.waitForFinished(30000));
  }
  constexpr int kRuns = 8;
  std::vector<std::unique_ptr<QProcess>> runs;
  for (int i = 0; i < kRuns; ++i) {
    auto run = std::make_unique<QProcess>();
    run->setProcessEnvironment(environment);
    // Each sets a key of its own and a shared one.
    run->start(
        QStringLiteral(VT_CLI_BINARY),
        {QStringLiteral("settings"), QStringLiteral("--settings"), file, QStringLiteral("set"),
         QStringLiteral("Mine.run%1=%1").arg(i), QStringLiteral("ORGC=%1").arg(i + 1)});
    runs.push_back(std::move(run));
  }
  for (auto& run : runs) {
    ASSERT_TRUE(run->waitForFinished(60000));
    EXPECT_EQ(run->exitCode(), 0) << run->readAllStandardError().toStdString();
  }
  QFile saved(file);
  ASSERT_TRUE(saved.open(QIODevice::ReadOnly));
  const auto doc = settings::IniDocument::Parse(saved.readAll());
  ASSERT_TRUE(doc.ok());
  for (int i = 0; i < kRuns; ++i) {
    EXPECT_EQ(doc.value().Value(QStringLiteral("Mine"), QStringLiteral("run%1").arg(i)),
              QString::number(i));
  }
  const int orgc = doc.value().Value(QStringLiteral("I11"), QStringLiteral("ORGC"))->toInt();
  EXPECT_TRUE(orgc >= 1 && orgc <= kRuns);
  EXPECT_FALSE(QFile::exists(file + QStringLiteral(".lock")));
}

}  // namespace
}  // namespace vt::cli
