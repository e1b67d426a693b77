// SPDX-License-Identifier: MIT
#include "convert/scan_walker.h"

#include <cmath>

#include "settings/geometry.h"
#include "settings/pixel_modes.h"

namespace vt::convert {
namespace {

using settings::PixelMode;
using settings::ScanDirection;

int Trunc(double value) { return static_cast<int>(std::trunc(value)); }

/// One walk in progress: the request, the cursor and the packer context over them.
class Walk {
 public:
  Walk(const WalkRequest& request, ConversionCursor& cursor, double pixelsPerByte)
      : settings_(request.settings),
        pixel_(request.settings.pixel),
        request_(request),
        c_(cursor),
        pack_(request.settings, request.source, cursor, request.stages),
        p_(pixelsPerByte) {}

  bool Run(ScanDirection direction) {
    switch (direction) {
      case ScanDirection::td:
        return Down();
      case ScanDirection::tu:
        return Up();
      case ScanDirection::tda:
        return AllDown();
      case ScanDirection::tua:
        return AllUp();
      case ScanDirection::tr:
        return Rows(PackFamily::Right, settings_.scan.CORN1);
      case ScanDirection::tl:
        return Rows(PackFamily::Left, settings_.scan.CORN2);
      case ScanDirection::tra:
        return ByteColumns(PackFamily::Right, settings_.scan.CORN1);
      case ScanDirection::tla:
        return ByteColumns(PackFamily::Left, settings_.scan.CORN2);
    }
    return true;
  }

 private:
  bool Monochrome() const { return settings::IsMonochromeMode(pack_.mode); }
  bool SixBits() const { return Monochrome() && !pixel_.bw8; }
  bool Slices() const { return pixel_.G16 && pixel_.ST7; }
  bool HorizontalPairs() const { return pixel_.G16 && pixel_.gsch; }

  /// Polls for a stop, then opens a byte: new comment, cleared value.
  bool BeginByte() {
    if (CheckStop(request_.keyPoll, c_)) return false;
    request_.stages.sink.StartComment();
    c_.Value = 0;
    return true;
  }

  /// Calls the packer of `family` and tells whether the walk may go on.
  bool Pack(PackFamily family) {
    switch (family) {
      case PackFamily::Down:
        PackDown(pack_);
        break;
      case PackFamily::Up:
        PackUp(pack_);
        break;
      case PackFamily::Left:
        PackLeft(pack_);
        break;
      case PackFamily::Right:
        PackRight(pack_);
        break;
    }
    return !c_.Aborted;
  }

  void GroupStart() {
    if (settings_.block.ColRx) request_.stages.sink.GroupStart();
  }

  /// td: pages of rows from the top, each page column by column. Only CORN1 runs the columns
  /// left to right; every other corner runs them from the right.
  bool Down() {
    // Two-page gray reads 8 rows per page in this walk, whatever its PixelsPerByte.
    const double p = pixel_.G42 ? 8.0 : p_;
    int pages = Trunc(c_.AreaHeight / p);
    if (Slices()) {
      pages = (c_.AreaHeight + 7) / 8;
    } else if (pixel_.C8) {
      pages = c_.AreaHeight / 8;
    } else if (pixel_.G32) {
      pages = c_.AreaHeight;
    }
    c_.PagesPerColumn = pages;
    c_.BytesPerRow = c_.AreaWidth;

    const bool leftToRight = settings_.scan.CORN1;
    const int xStart = leftToRight ? c_.AreaLeft : c_.AreaRight - 1;
    const int dx = leftToRight ? 1 : -1;
    int pageTop = c_.AreaTop;
    for (int page = 0; page < pages; ++page) {
      GroupStart();
      for (int x = xStart; x >= c_.AreaLeft && x < c_.AreaRight; x += dx) {
        if (!BeginByte()) return false;
        c_.X = x;
        c_.Y = pageTop;
        if (!Pack(PackFamily::Down)) return false;
      }
      // The slice packer leaves Y one row past its slice; the next slice starts where it ended.
      pageTop = Slices() ? c_.Y - 1 : pageTop + Trunc(p);
      if (pageTop >= c_.AreaBottom) break;
    }
    return true;
  }

  /// tu: pages from the bottom row up, each page column by column; CORN4 runs the columns left
  /// to right, every other corner from the right. The walk ends after AreaHeight / p pages or
  /// when the page start passes above row 0. In 8 colour mode the page count starts at 2, so
  /// one page fewer is walked.
  bool Up() {
    const int pages = Trunc(c_.AreaHeight / p_);
    c_.PagesPerColumn = pages;
    c_.BytesPerRow = c_.AreaWidth;

    const bool leftToRight = settings_.scan.CORN4;
    const int xStart = leftToRight ? c_.AreaLeft : c_.AreaRight - 1;
    const int dx = leftToRight ? 1 : -1;
    int pageBottom = c_.AreaBottom - 1;
    for (int page = pixel_.C8 ? 2 : 1; page <= pages && pageBottom > -1; ++page) {
      GroupStart();
      for (int x = xStart; x >= c_.AreaLeft && x < c_.AreaRight; x += dx) {
        if (!BeginByte()) return false;
        c_.X = x;
        c_.Y = pageBottom;
        if (!Pack(PackFamily::Up)) return false;
      }
      pageBottom -= Trunc(p_);
    }
    return true;
  }

  /// Bytes down one column in tda and tua. In 6-bit mode the extra page depends on the width,
  /// not the height: that is how the count has always been taken.
  int AllPagesPerColumn() const {
    const int h = c_.AreaHeight;
    if (SixBits()) return h / 6 + (c_.AreaWidth % 6 != 0 ? 1 : 0);
    if (pixel_.C8) return h / 8;
    if (Slices()) return (h + 7) / 8;
    if (HorizontalPairs()) return h;
    if (pixel_.G16) return h / 2;
    if (pixel_.G4 || pixel_.G42) return h / 4;
    if (pixel_.G32) return h;
    return Trunc(h / p_);
  }

  /// tda (downward) and tua (upward): column by column, all pages of a column in turn. Inside a
  /// column Y runs on from where the packer left it. With two horizontal pixels per byte (G16
  /// with gsch) a column is two pixels wide and there are half as many.
  bool AllColumns(PackFamily family, bool leftToRight) {
    const int pages = AllPagesPerColumn();
    const int columnStep = HorizontalPairs() ? 2 : 1;
    const int columns = HorizontalPairs() ? c_.AreaWidth / 2 : c_.AreaWidth;
    c_.PagesPerColumn = pages;
    c_.BytesPerRow = columns;

    const int dx = leftToRight ? columnStep : -columnStep;
    int x = leftToRight ? c_.AreaLeft : c_.AreaRight - 1;
    for (int column = 0; column < columns; ++column, x += dx) {
      GroupStart();
      c_.Y = family == PackFamily::Down ? c_.AreaTop : c_.AreaBottom - 1;
      for (int page = 0; page < pages; ++page) {
        if (!BeginByte()) return false;
        c_.X = x;
        if (!Pack(family)) return false;
        // The slice packer runs one row past its slice.
        if (Slices()) c_.Y -= 1;
      }
    }
    return true;
  }

  bool AllDown() { return AllColumns(PackFamily::Down, settings_.scan.CORN1); }
  bool AllUp() { return AllColumns(PackFamily::Up, settings_.scan.CORN4); }

  /// Bytes along one row in the horizontal walks.
  int HorizontalBytesPerRow(PackFamily family, bool byteColumns) const {
    const int w = c_.AreaWidth;
    if (SixBits()) return w / 6 + (w % 6 != 0 ? 1 : 0);
    if (pixel_.C8) return w / 8;
    if (pixel_.G16) return w / 2;
    // Packed 32 gray in tla steps two pixels per byte column; every other 32 gray walk reads
    // one pixel per call.
    if (pixel_.G32) return byteColumns && family == PackFamily::Left && pixel_.PM ? w / 2 : w;
    if (byteColumns && (pixel_.G4 || pixel_.G42)) return w / 4;
    return Trunc(w / p_);
  }

  /// Pixels between two byte columns of tra and tla.
  int ByteColumnStep(PackFamily family) const {
    if (SixBits()) return 6;
    if (Monochrome() || pixel_.C8) return 8;
    if (pixel_.G16) return 2;
    if (pixel_.G32) return family == PackFamily::Left && pixel_.PM ? 2 : 1;
    if (pixel_.G4 || pixel_.G42) return 4;
    if (pixel_.C16) return 2;
    return 1;
  }

  /// Rows of the area in walk order: from the top when `fromTop`, else from the bottom.
  template <typename Visit>
  bool ForEachRow(bool fromTop, Visit visit) {
    if (fromTop) {
      for (int y = c_.AreaTop; y < c_.AreaBottom; ++y) {
        if (!visit(y)) return false;
      }
    } else {
      for (int y = c_.AreaBottom - 1; y >= c_.AreaTop; --y) {
        if (!visit(y)) return false;
      }
    }
    return true;
  }

  /// tr (rightward) and tl (leftward): row by row, the bytes of a row in turn. Inside a row X
  /// runs on from where the packer left it.
  bool Rows(PackFamily family, bool fromTop) {
    const int bytes = HorizontalBytesPerRow(family, false);
    c_.BytesPerRow = bytes;
    c_.PagesPerColumn = c_.AreaHeight;
    return ForEachRow(fromTop, [&](int y) {
      GroupStart();
      c_.X = family == PackFamily::Right ? c_.AreaLeft : c_.AreaRight - 1;
      for (int b = 0; b < bytes; ++b) {
        if (!BeginByte()) return false;
        c_.Y = y;
        if (!Pack(family)) return false;
      }
      return true;
    });
  }

  /// tra (rightward, byte columns from the left) and tla (leftward, from the right): byte
  /// column by byte column, every row of a byte column in turn.
  bool ByteColumns(PackFamily family, bool fromTop) {
    const int bytes = HorizontalBytesPerRow(family, true);
    const int step = ByteColumnStep(family);
    c_.BytesPerRow = bytes;
    c_.PagesPerColumn = c_.AreaHeight;
    for (int b = 0; b < bytes; ++b) {
      const int x =
          family == PackFamily::Right ? c_.AreaLeft + b * step : c_.AreaRight - 1 - b * step;
      GroupStart();
      const bool completed = ForEachRow(fromTop, [&](int y) {
        if (!BeginByte()) return false;
        c_.X = x;
        c_.Y = y;
        return Pack(family);
      });
      if (!completed) return false;
    }
    return true;
  }

  const settings::Settings& settings_;
  const settings::PixelModeSettings& pixel_;
  const WalkRequest& request_;
  ConversionCursor& c_;
  PackContext pack_;
  double p_;
};

}  // namespace

bool CheckStop(platform::KeyPoll& keyPoll, const ConversionCursor& cursor) {
  return cursor.Aborted || keyPoll.EscapePressed();
}

double StartWalk(const WalkRequest& request, std::optional<ScanDirection> direction,
                 ConversionCursor& cursor) {
  const settings::Settings& s = request.settings;
  cursor.AreaLeft = request.area.left;
  cursor.AreaTop = request.area.top;
  cursor.AreaRight = request.area.right;
  cursor.AreaBottom = request.area.bottom;
  if (request.lowerHalf && direction && settings::Info(*direction).horizontal) {
    cursor.AreaTop = s.display.GHI;
    cursor.AreaBottom = 2 * s.display.GHI;
  }
  cursor.AreaWidth = cursor.AreaRight - cursor.AreaLeft;
  cursor.AreaHeight = cursor.AreaBottom - cursor.AreaTop;
  cursor.LimitX = request.limitX.value_or(s.display.GWI);
  cursor.LimitY = request.limitY.value_or(s.display.GHI);
  cursor.FontMode = request.fontMode;
  cursor.ByteCount = 0.0;
  cursor.Value = 0;
  cursor.PackedPhase = 0;
  cursor.PagesPerColumn = 0;
  cursor.BytesPerRow = 0;
  return request.pixelsPerByte.value_or(s.display.NOMAT ? 1.0 : settings::PixelsPerByte(s));
}

bool WalkArea(const WalkRequest& request, ConversionCursor& cursor) {
  const std::optional<ScanDirection> direction = settings::CurrentScanDirection(request.settings);
  const double p = StartWalk(request, direction, cursor);
  if (!direction) return true;
  Walk walk(request, cursor, p);
  return walk.Run(*direction);
}

}  // namespace vt::convert
