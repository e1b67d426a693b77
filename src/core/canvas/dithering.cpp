// SPDX-License-Identifier: MIT
#include "canvas/dithering.h"

#include <algorithm>
#include <array>
#include <vector>

namespace vt::canvas {
namespace {

constexpr KernelCell kFloydSteinberg[] = {{1, 0, 7}, {-1, 1, 3}, {0, 1, 5}, {1, 1, 1}};
constexpr KernelCell kStucki[] = {{1, 0, 8},  {2, 0, 4}, {-2, 1, 2}, {-1, 1, 4},
                                  {0, 1, 8},  {1, 1, 4}, {2, 1, 2},  {-2, 2, 1},
                                  {-1, 2, 2}, {0, 2, 4}, {1, 2, 2},  {2, 2, 1}};
constexpr KernelCell kSierra[] = {{1, 0, 5}, {2, 0, 3}, {-2, 1, 2}, {-1, 1, 4}, {0, 1, 5},
                                  {1, 1, 4}, {2, 1, 2}, {-1, 2, 2}, {0, 2, 3},  {1, 2, 2}};
constexpr KernelCell kJaJuNi[] = {{1, 0, 7},  {2, 0, 5}, {-2, 1, 3}, {-1, 1, 5},
                                  {0, 1, 7},  {1, 1, 5}, {2, 1, 3},  {-2, 2, 1},
                                  {-1, 2, 3}, {0, 2, 5}, {1, 2, 3},  {2, 2, 1}};
constexpr KernelCell kSteveArche[] = {{2, 0, 32}, {-3, 1, 12}, {-1, 1, 26}, {1, 1, 30},
                                      {3, 1, 16}, {-2, 2, 12}, {0, 2, 26},  {2, 2, 12},
                                      {-3, 3, 5}, {-1, 3, 12}, {1, 3, 12},  {3, 3, 5}};
constexpr KernelCell kBurkes[] = {{1, 0, 8}, {2, 0, 4}, {-2, 1, 2}, {-1, 1, 4},
                                  {0, 1, 8}, {1, 1, 4}, {2, 1, 2}};

const DitherKernel kKernels[] = {
    {{}, 1},       {kFloydSteinberg, 16}, {kStucki, 42}, {kSierra, 32},
    {kJaJuNi, 48}, {kSteveArche, 200},    {kBurkes, 32},
};

constexpr std::array<const char*, 7> kCaptions = {"Nearest", "Floyd Steinberg", "Stucki", "Sierra",
                                                  "JaJuNi",  "Steve Arche",     "Burkes"};

constexpr std::array<const char*, 7> kNames = {"nearest", "floyd-steinberg", "stucki", "sierra",
                                               "jajuni",  "steve-arche",     "burkes"};

int Luma(int red, int green, int blue) { return 77 * red + 150 * green + 29 * blue; }

}  // namespace

const DitherKernel& KernelOf(DitherMethod method) { return kKernels[static_cast<int>(method)]; }

Color MonochromeLookup(int red, int green, int blue) {
  return Luma(red, green, blue) < 32513 ? kBlack : kWhite;
}

Color GrayLookup(int red, int green, int blue) {
  const Color y = Color(Luma(red, green, blue) >> 8);
  return y | (y << 8) | (y << 16);
}

void GrayscaleRaster(QImage& image) {
  for (int y = 0; y < image.height(); ++y) {
    auto* row = reinterpret_cast<QRgb*>(image.scanLine(y));
    for (int x = 0; x < image.width(); ++x) {
      row[x] = ToQRgb(GrayLookup(qRed(row[x]), qGreen(row[x]), qBlue(row[x])));
    }
  }
}

void DitherRaster(QImage& image, const DitherParameters& parameters) {
  DitherRasterWith(
      image, parameters.method,
      parameters.reduction == DitherReduction::Monochrome ? MonochromeLookup : GrayLookup);
}

void DitherRasterWith(QImage& image, DitherMethod method, const DitherLookup& lookup) {
  Q_ASSERT(image.format() == QImage::Format_RGB32);
  const DitherKernel& kernel = KernelOf(method);
  const int width = image.width();
  const int height = image.height();
  // The errors waiting for the rows the kernel reaches: as many rows as the kernel is deep,
  // used in turn, each with three channels per pixel.
  int depth = 1;
  for (const KernelCell& cell : kernel.cells) depth = std::max(depth, cell.dy + 1);
  std::vector<std::vector<int>> errors(depth, std::vector<int>(std::size_t(width) * 3, 0));

  for (int y = 0; y < height; ++y) {
    std::vector<int>& current = errors[y % depth];
    auto* row = reinterpret_cast<QRgb*>(image.scanLine(y));
    for (int x = 0; x < width; ++x) {
      const int* received = &current[std::size_t(x) * 3];
      const int value[3] = {std::clamp(qRed(row[x]) + received[0] / kernel.sum, 0, 255),
                            std::clamp(qGreen(row[x]) + received[1] / kernel.sum, 0, 255),
                            std::clamp(qBlue(row[x]) + received[2] / kernel.sum, 0, 255)};
      const Color out = lookup(value[0], value[1], value[2]);
      row[x] = ToQRgb(out);
      if (kernel.cells.empty()) continue;
      const int error[3] = {value[0] - int(out & 0xFF), value[1] - int((out >> 8) & 0xFF),
                            value[2] - int((out >> 16) & 0xFF)};
      for (const KernelCell& cell : kernel.cells) {
        const int tx = x + cell.dx;
        if (tx < 0 || tx >= width || y + cell.dy >= height) continue;
        int* target = &errors[(y + cell.dy) % depth][std::size_t(tx) * 3];
        for (int c = 0; c < 3; ++c) target[c] += error[c] * cell.weight;
      }
    }
    std::fill(current.begin(), current.end(), 0);
  }
}

QString DitherMethodName(DitherMethod method) {
  return QString::fromLatin1(kNames[static_cast<std::size_t>(method)]);
}

QString DitherMethodCaption(DitherMethod method) {
  return QString::fromLatin1(kCaptions[static_cast<std::size_t>(method)]);
}

QString DitherReductionCaption(DitherReduction reduction) {
  return reduction == DitherReduction::Monochrome
             ? QStringLiteral("Color Reduction Monochrome")
             : QStringLiteral("Color Reduction 256 Gray Shades");
}

std::optional<DitherMethod> DitherMethodFromName(const QString& name) {
  for (std::size_t i = 0; i < kNames.size(); ++i) {
    if (name.compare(QLatin1String(kNames[i]), Qt::CaseInsensitive) == 0) {
      return static_cast<DitherMethod>(i);
    }
  }
  return std::nullopt;
}

QString DitherMethodNames() {
  QStringList names;
  for (const char* name : kNames) names << QString::fromLatin1(name);
  return names.join(QStringLiteral(", "));
}

}  // namespace vt::canvas
