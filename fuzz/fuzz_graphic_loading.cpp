// SPDX-License-Identifier: MIT
// Feeds arbitrary bytes to the picture decoders: the first byte picks the format. Every input
// must end in a picture or an error, within the size limits, never a crash or a hang.
#include <QByteArray>
#include <QGuiApplication>
#include <cstddef>
#include <cstdint>

#include "canvas/graphic_loading.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static int argc = 1;
  static char name[] = "fuzz_graphic_loading";
  static char* argv[] = {name, nullptr};
  static QGuiApplication* app = [] {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    return new QGuiApplication(argc, argv);
  }();
  (void)app;
  if (size < 1) return 0;
  static const char* kSuffixes[] = {"png", "bmp", "gif", "jpg", "ico", "tif", "svg"};
  const char* suffix = kSuffixes[data[0] % 7];
  const QByteArray bytes(reinterpret_cast<const char*>(data + 1), static_cast<qsizetype>(size - 1));
  const auto decoded = vt::canvas::DecodeGraphicBytes(bytes, QString::fromLatin1(suffix),
                                                      QSize(64, 32), QStringLiteral("fuzz"));
  if (decoded.ok() && decoded.value().frames.isEmpty()) __builtin_trap();
  return 0;
}
