// SPDX-License-Identifier: MIT
#include "canvas/graphic_loading.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QPainter>
#include <QSvgRenderer>
#include <QTransform>
#include <algorithm>

#include "canvas/auto_framing.h"
#include "canvas/raster.h"

namespace vt::canvas {
namespace {

Error LoadError(const QString& path, const QString& message, Error::Kind kind = Error::Kind::Io) {
  Error e;
  e.kind = kind;
  e.path = path;
  e.message = message;
  return e;
}

/// A frame as the canvas holds pictures: 24-bit, transparency laid on white.
QImage Opaque(const QImage& frame) {
  if (!frame.hasAlphaChannel()) return frame.convertToFormat(QImage::Format_RGB32);
  QImage out(frame.size(), QImage::Format_RGB32);
  out.fill(Qt::white);
  QPainter painter(&out);
  painter.drawImage(0, 0, frame);
  return out;
}

bool TooLarge(QSize size) {
  return size.isValid() && qint64(size.width()) * size.height() > kMaxGraphicPixels;
}

}  // namespace

Result<DecodedGraphic> DecodeGraphic(const QString& path, QSize svgSize) {
  const QString suffix = QFileInfo(path).suffix();
  if (!IsGraphicExtension(suffix)) {
    return LoadError(path, QStringLiteral("not a graphic file"), Error::Kind::Refused);
  }
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) return LoadError(path, file.errorString());
  // No picture file the canvas can hold comes near this; a larger one is refused unread.
  if (file.size() > kMaxGraphicPixels * 4) {
    return LoadError(path, QStringLiteral("file too large"), Error::Kind::Limit);
  }
  return DecodeGraphicBytes(file.readAll(), suffix, svgSize, path);
}

bool IsGraphicExtension(const QString& suffix) {
  static const QStringList kKinds = {
      QStringLiteral("GIF"), QStringLiteral("JPG"),  QStringLiteral("JPEG"),
      QStringLiteral("PNG"), QStringLiteral("ICO"),  QStringLiteral("BMP"),
      QStringLiteral("TIF"), QStringLiteral("TIFF"), QStringLiteral("SVG")};
  return kKinds.contains(suffix.toUpper());
}

Result<DecodedGraphic> DecodeGraphicBytes(const QByteArray& bytes, const QString& suffix,
                                          QSize svgSize, const QString& path) {
  DecodedGraphic g;
  g.ImportExtension = QLatin1Char('.') + suffix.toUpper();
  if (suffix.toUpper() == QLatin1String("SVG")) {
    QSvgRenderer renderer(bytes);
    if (!renderer.isValid()) return LoadError(path, QStringLiteral("not a valid SVG picture"));
    if (svgSize.isEmpty()) svgSize = renderer.defaultSize();
    if (svgSize.isEmpty() || TooLarge(svgSize)) {
      return LoadError(path, QStringLiteral("SVG picture size out of range"), Error::Kind::Limit);
    }
    QImage out(svgSize, QImage::Format_RGB32);
    out.fill(Qt::white);
    QPainter painter(&out);
    renderer.render(&painter);
    g.frames.append(out);
    return g;
  }
  QBuffer buffer;
  buffer.setData(bytes);
  buffer.open(QIODevice::ReadOnly);
  QImageReader reader(&buffer);
  // PNG and BMP are read by Qt's own handlers: named by their signature, the reader goes
  // straight to them instead of loading every format plugin to ask it first.
  if (bytes.startsWith("\x89PNG\r\n\x1a\n") || bytes.startsWith("BM")) {
    reader.setFormat(bytes.startsWith("BM") ? "bmp" : "png");
    reader.setAutoDetectImageFormat(false);
  }
  // Limits are checked on the header before any pixel is read, so an enormous or hostile
  // header costs nothing.
  if (TooLarge(reader.size())) {
    return LoadError(path,
                     QStringLiteral("picture of %1 x %2 pixels is too large")
                         .arg(reader.size().width())
                         .arg(reader.size().height()),
                     Error::Kind::Limit);
  }
  reader.setAllocationLimit(int(kMaxGraphicPixels * 4 / (1024 * 1024)) + 1);
  const bool animated = suffix.toUpper() == QLatin1String("GIF");
  do {
    QImage frame = reader.read();
    if (frame.isNull()) {
      if (!g.frames.isEmpty()) break;  // the frames before a damaged one are kept
      return LoadError(path, reader.errorString(), Error::Kind::Parse);
    }
    g.frames.append(Opaque(frame));
    if (animated) g.delays.append(reader.nextImageDelay());
  } while (animated && reader.canRead() && g.frames.size() < 10000);
  return g;
}

QImage PropotionalResize(const QImage& picture, QSize limit) {
  if (picture.isNull() || limit.isEmpty()) return picture;
  const double scale =
      std::min(double(limit.width()) / picture.width(), double(limit.height()) / picture.height());
  const QSize size(std::max(1, int(picture.width() * scale)),
                   std::max(1, int(picture.height() * scale)));
  return picture.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
      .convertToFormat(QImage::Format_RGB32);
}

std::optional<QImage> RotateImport(const QImage& picture, int angle) {
  QTransform turn;
  turn.rotate(angle);
  const QRect box = turn.mapRect(QRectF(picture.rect())).toAlignedRect();
  if (box.isEmpty() || qint64(box.width()) * box.height() > kMaxGraphicPixels) return std::nullopt;
  // Quarter turns move whole pixels: no smoothing may touch their colours.
  if (angle % 90 == 0) return picture.transformed(turn).convertToFormat(QImage::Format_RGB32);
  QImage out(box.size(), QImage::Format_RGB32);
  if (out.isNull()) return std::nullopt;
  out.fill(Qt::white);
  QPainter painter(&out);
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  painter.translate(out.width() / 2.0, out.height() / 2.0);
  painter.rotate(angle);
  painter.drawImage(QPointF(-picture.width() / 2.0, -picture.height() / 2.0), picture);
  return out;
}

Result<QRect> CalcCloseCrop(const QImage& picture) {
  if (picture.depth() != 24 && picture.depth() != 32) {
    return LoadError({}, QStringLiteral("Incorrect bit depth, bitmap must be 24-bit!"),
                     Error::Kind::Refused);
  }
  // The auto frame of one pixel per byte, kept tight on both axes, is the crop.
  const SelectionRect frame =
      AutoFrameBounds(picture.convertToFormat(QImage::Format_RGB32), FramingRule{true, 1, true});
  return frame.IsEmpty() ? QRect() : frame.ToQRect();
}

}  // namespace vt::canvas
