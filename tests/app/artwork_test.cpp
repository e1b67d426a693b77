// SPDX-License-Identifier: MIT
#include "app/artwork.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QImage>

#include "app/display_commands.h"
#include "app/graphic_import.h"
#include "app/state.h"
#include "support/temp_folders.h"
#include "util/atomic_write.h"

namespace vt::app {
namespace {

namespace Answer = platform::Answer;

/// A 128 x 64 picture in the pictures folder, loaded onto a canvas of its size, then the
/// display made smaller, which clears the canvas: what a Save+Quit would write over it.
class Artwork : public ::testing::Test {
 protected:
  Artwork() {
    SetDisplaySize(state, 128, 64);
    QDir().mkpath(t.folders.Pictures());
  }
  /// Writes `name` to the pictures folder, loads it and shrinks the display.
  QString LoadSource(const QString& name, const char* format) {
    QImage picture(128, 64, QImage::Format_RGB32);
    picture.fill(qRgb(0, 0, 0));
    const QString path = t.folders.Pictures() + QLatin1Char('/') + name;
    EXPECT_TRUE(picture.save(path, format));
    source = vt::test::ReadAll(path);
    EXPECT_TRUE(ImportImageMDIChild(state, t.services, path, false));
    SetDisplaySize(state, 64, 32);
    t.dialogs.shown.clear();
    return path;
  }
  vt::test::TestServices t;
  AppState state;
  QByteArray source;
};

TEST_F(Artwork, TheLoadedPictureIsReplacedOnlyWhenTheUserSaysSo) {
  for (const char* format : {"PNG", "JPG"}) {
    SCOPED_TRACE(format);
    const QString name = QStringLiteral("logo.") + QString::fromLatin1(format).toLower();
    const QString path = LoadSource(name, format);
    t.dialogs.Answer(Answer::No);
    ASSERT_TRUE(SaveArtworkButtonClick(state, t.services));
    ASSERT_EQ(t.dialogs.shown.size(), 1);
    EXPECT_EQ(t.dialogs.shown[0].text,
              QStringLiteral(" %1 \r is a picture the artwork was loaded from. \r Replace it with "
                             "the artwork ? ")
                  .arg(path));
    EXPECT_EQ(t.dialogs.shown[0].caption, "Save Artwork");
    EXPECT_EQ(vt::test::ReadAll(path), source);  // the source stays whole
    const QString beside = t.folders.Pictures() + QStringLiteral("/logo (artwork 1).") +
                           QString::fromLatin1(format).toLower();
    EXPECT_EQ(QImage(beside).size(), QSize(64, 32));
    EXPECT_EQ(state.log.StatusText(), QStringLiteral("Artwork saved to ") + beside);
    EXPECT_TRUE(state.modes.ArtworkSaved);

    // Asked again, No takes the next free name; Yes replaces the source.
    t.dialogs.Answer(Answer::No);
    ASSERT_TRUE(SaveArtworkButtonClick(state, t.services));
    EXPECT_TRUE(QFileInfo::exists(t.folders.Pictures() + QStringLiteral("/logo (artwork 2).") +
                                  QString::fromLatin1(format).toLower()));
    t.dialogs.Answer(Answer::Yes);
    ASSERT_TRUE(SaveArtworkButtonClick(state, t.services));
    EXPECT_EQ(QImage(path).size(), QSize(64, 32));
  }
}

TEST_F(Artwork, ANewArtworkIsSavedWithoutAQuestionAndAFailureIsTold) {
  state.settings.output.nbmfn = QStringLiteral("NewBitmap.bmp");
  state.modes.ArtworkSaved = false;
  ASSERT_TRUE(SaveArtworkButtonClick(state, t.services));
  EXPECT_TRUE(t.dialogs.shown.isEmpty());
  EXPECT_EQ(QImage(t.folders.Pictures() + QStringLiteral("/NewBitmap.bmp")).size(), QSize(128, 64));

  // A name whose folder is a file: nothing written, the reason shown, the flag unchanged.
  state.modes.ArtworkSaved = false;
  ASSERT_TRUE(WriteFileAtomically(t.folders.Pictures() + QStringLiteral("/blocker"), "x").ok());
  state.settings.output.nbmfn = QStringLiteral("blocker/a.png");
  EXPECT_FALSE(SaveArtworkButtonClick(state, t.services));
  ASSERT_EQ(t.dialogs.shown.size(), 1);
  EXPECT_EQ(t.dialogs.shown[0].caption, "Error");
  EXPECT_TRUE(t.dialogs.shown[0].text.startsWith(t.folders.Pictures() + "/blocker/a.png: "));
  EXPECT_FALSE(state.modes.ArtworkSaved);
}

}  // namespace
}  // namespace vt::app
