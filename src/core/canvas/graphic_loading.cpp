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

#include "app/messages.h"
#include "app/modes.h"
#include "app/output_naming.h"
#include "app/shell_commands.h"
#include "canvas/auto_framing.h"
#include "canvas/canvas_commands.h"
#include "canvas/color_check.h"
#include "canvas/raster.h"
#include "canvas/threshold.h"
#include "platform/dialogs.h"
#include "settings/pixel_modes.h"

namespace vt::canvas {
namespace {

using platform::DialogType;
namespace Buttons = platform::Buttons;
namespace Answer = platform::Answer;

const QString kLoadErrorTitle = QStringLiteral("Loading a Graphic Error");

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

QString SizeText(int h, int w) { return QStringLiteral("H : %1 W : %2").arg(h).arg(w); }

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

bool ImportImageMDIChild(app::AppState& state, app::Services& services, const QString& path,
                         bool isFolder) {
  state.log.Laction = QStringLiteral("Import Image MDI Child");
  const auto refuse = [&](const QString& text) {
    app::MessageDlgA(state, services.dialogs, text, kLoadErrorTitle, 0, Buttons::Ok,
                     DialogType::Error);
    return false;
  };
  if (isFolder) return refuse(QStringLiteral(" Please select file to import in the File List ! "));
  QImage picture;
  int frames = 1;
  bool gif = false;
  const bool newFile =
      QFileInfo(path).fileName().compare(QStringLiteral("Newfile.bmp"), Qt::CaseInsensitive) == 0;
  if (newFile) {
    picture = QImage(state.canvas.Width(), state.canvas.Height(), QImage::Format_RGB32);
    picture.fill(Qt::white);
  } else {
    const Result<DecodedGraphic> decoded =
        DecodeGraphic(path, QSize(state.canvas.Width(), state.canvas.Height()));
    if (!decoded) {
      if (decoded.error().kind == Error::Kind::Refused) {
        return refuse(QFileInfo(path).fileName() +
                      QStringLiteral(" is is not a valid graphic file ! "));
      }
      state.log.StatusBarAndLog(decoded.error().ToString());
      return refuse(QStringLiteral("Graphic loading Error"));
    }
    picture = decoded.value().frames.first();
    frames = int(decoded.value().frames.size());
    gif = decoded.value().ImportExtension == QLatin1String(".GIF");
  }
  state.files.ImportExtension = QLatin1Char('.') + QFileInfo(path).suffix().toUpper();
  state.settings.output.nbmfn = QFileInfo(path).fileName();
  app::defineOutputFileName(state);
  AssignInPutBitmap(state, services, picture, true);
  if (!newFile) state.files.LastCanvasFile = QFileInfo(path).absoluteFilePath();
  if (gif && frames == 1) {
    app::MessageDlgA(state, services.dialogs,
                     QStringLiteral(" Single layered GIF loaded, no animation ! "),
                     QStringLiteral("Info"), 0, Buttons::Ok, DialogType::Information);
  } else if (gif) {
    // Until animations exist, a GIF of several frames loads as its first frame.
    state.log.StatusBarAndLog(
        QStringLiteral("%1 layers in loaded GIF, animation not available yet: first layer loaded")
            .arg(frames));
  }
  return true;
}

bool LoadGraphicFile(app::AppState& state, app::Services& services, const QString& path) {
  if (app::CheckMode(state, services, 0)) return false;
  if (!ResolveFloatingSelection(state, services, BlackWhiteConversions(state))) return false;
  if (!ImportImageMDIChild(state, services, path, QFileInfo(path).isDir())) return false;
  app::AddMRUF(state, QFileInfo(path).absoluteFilePath());
  return true;
}

bool ReloadLastCanvasButtonClick(app::AppState& state, app::Services& services) {
  QString path = state.files.LastCanvasFile;
  if (path.isEmpty()) {
    // A new run knows the last picture from the recent files, which the settings keep.
    const auto picture =
        std::find_if(state.MRUList.cbegin(), state.MRUList.cend(),
                     [](const QString& f) { return IsGraphicExtension(QFileInfo(f).suffix()); });
    if (picture != state.MRUList.cend()) path = *picture;
  }
  const QString title = QStringLiteral("Reload Last Canvas File");
  if (path.isEmpty()) {
    app::MessageDlgA(state, services.dialogs,
                     QStringLiteral(" No graphic file has been loaded onto the Work Canvas yet ! "),
                     title, 0, Buttons::Ok, DialogType::Information);
    return false;
  }
  if (!QFileInfo(path).isFile()) {
    app::MessageDlgA(state, services.dialogs, path + QStringLiteral(" not found ! "), title, 0,
                     Buttons::Ok, DialogType::Warning);
    return false;
  }
  return LoadGraphicFile(state, services, path);
}

void AssignInPutBitmap(app::AppState& state, app::Services& services, QImage picture,
                       bool fromFile) {
  state.log.Laction = QStringLiteral("Assign Input Bitmap");
  picture = picture.convertToFormat(QImage::Format_RGB32);
  const QString kind = state.files.ImportExtension;
  if (state.ImportAngle != 0 && kind != QLatin1String(".GIF") && kind != QLatin1String(".SVG")) {
    if (std::optional<QImage> turned = RotateImport(picture, state.ImportAngle)) {
      picture = std::move(*turned);
    } else {
      state.log.StatusBarAndLog(QStringLiteral("Error Import Rotation : Angle= ") +
                                QString::number(state.ImportAngle));
      app::MessageDlgA(state, services.dialogs,
                       QStringLiteral(" Picture too large for rotation \r "),
                       QStringLiteral("Warning"), 0, Buttons::Ok, DialogType::Warning);
    }
  }
  if (state.blackWhite.DitherOnLoad) DitherRaster(picture, state.blackWhite.PreviewDither);
  ThresholdOFF(state);
  FloatingSelection& selection = state.canvas.Selection();
  const SelectionRect frame = selection.Rect();
  const bool toFrame = !frame.IsEmpty();
  const QSize limit = toFrame ? QSize(frame.Width(), frame.Height())
                              : QSize(state.canvas.Width(), state.canvas.Height());
  if (picture.width() > limit.width() || picture.height() > limit.height()) {
    state.log.StatusBarAndLog(QStringLiteral("Image size larger than Work Canvas Dialog"));
    const QString pictureSize = SizeText(picture.height(), picture.width());
    const QString text =
        toFrame
            ? QStringLiteral(" Selection Frame Size = ") + SizeText(limit.height(), limit.width()) +
                  QStringLiteral("\r Image size larger than Selection Frame \r Image Size = ") +
                  pictureSize + QStringLiteral("\r Resize graphic to fit Work Canvas ? ")
        : fromFile
            ? QStringLiteral(" Picture size larger than Work Canvas   \r \r Picture Size = ") +
                  pictureSize + QStringLiteral("\r Resize Graphic to fit Work Canvas ? ")
            : QStringLiteral(" Work Canvas Size = ") + SizeText(limit.height(), limit.width()) +
                  QStringLiteral("\r Image size larger than Work Canvas   \r Image Size = ") +
                  pictureSize + QStringLiteral("\r Resize graphic to fit Work Canvas ? ");
    const int answer = app::MessageDlgA(state, services.dialogs, text, QStringLiteral("Warning"), 0,
                                        Buttons::Yes | Buttons::No, DialogType::Warning);
    if (answer == Answer::Yes) picture = PropotionalResize(picture, limit);
  }
  const bool needsConversion =
      CheckColorsSelection(state, services, picture) == ColorCheck::ThresholdPending;
  selection.Float(picture, toFrame ? QPoint(frame.X1, frame.Y1) : QPoint(0, 0), needsConversion);
  if (needsConversion) ThresholdON(state);
  EnableSelection(state);
  state.canvas.CopyBitmapToCanvas();
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
