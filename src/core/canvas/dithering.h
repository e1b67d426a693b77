// SPDX-License-Identifier: MIT
#pragma once

// The colour-reduction engine behind "Perform Dithering": each pixel goes to a black-and-white
// or a gray lookup, and with an error-diffusion method the error of each channel is spread to
// the pixels not yet visited by the method's kernel.

#include <QImage>
#include <QString>
#include <functional>
#include <optional>
#include <span>

#include "canvas/raster.h"

namespace vt::canvas {

/// The dithering methods, numbered as the Dithering menu numbers them.
enum class DitherMethod {
  Nearest = 0,         ///< no error diffusion: each pixel goes to the lookup by itself
  FloydSteinberg = 1,  ///< Floyd-Steinberg, sum 16
  Stucki = 2,          ///< Stucki, sum 42
  Sierra = 3,          ///< Sierra, 3-row form, sum 32
  JaJuNi = 4,          ///< Jarvis, Judice and Ninke, sum 48
  SteveArche = 5,      ///< Stevenson and Arce, sum 200
  Burkes = 6,          ///< Burkes, sum 32
};

/// What the engine reduces to, numbered as the menu numbers it.
enum class DitherReduction {
  Monochrome = 4,  ///< "Color Reduction Monochrome"
  GrayScale = 5,   ///< "Color Reduction 256 Gray Shades"
};

/// The two radio groups of the Dithering menu. Floyd Steinberg to monochrome at start.
struct DitherParameters {
  DitherMethod method = DitherMethod::FloydSteinberg;
  DitherReduction reduction = DitherReduction::Monochrome;
};

/// One cell of a kernel: the offset from the current pixel and the weight it receives.
struct KernelCell {
  int dx;
  int dy;
  int weight;
};

/// The kernel of an error-diffusion method and the sum of its weights; Nearest has no cells.
struct DitherKernel {
  std::span<const KernelCell> cells;
  int sum = 1;
};
const DitherKernel& KernelOf(DitherMethod method);

/// 77*R + 150*G + 29*B less than 32513 gives black, otherwise white.
Color MonochromeLookup(int red, int green, int blue);
/// (77*R + 150*G + 29*B) >> 8 in all three channels.
Color GrayLookup(int red, int green, int blue);
/// Converts every pixel of a 32-bit raster to its gray (the gray lookup), in place.
void GrayscaleRaster(QImage& image);

/// Reduces `image` (Format_RGB32) in place. Rows are visited from the top, each from the left;
/// the value of a pixel is its colour plus the error it has received, each channel clamped to
/// 0..255, and the difference between that value and the lookup's answer is spread by the
/// kernel, per channel. Errors are kept in units of 1/sum and added to a pixel truncated
/// toward zero; error falling outside the raster is lost.
void DitherRaster(QImage& image, const DitherParameters& parameters);

/// The answer of a reduction for one pixel value: the colour (0x00BBGGRR) that red, green and
/// blue (each 0..255) become.
using DitherLookup = std::function<Color(int red, int green, int blue)>;
/// The same engine with any lookup, such as the nearest colour of a palette.
void DitherRasterWith(QImage& image, DitherMethod method, const DitherLookup& lookup);

/// The menu captions: "Nearest", "Floyd Steinberg", "Stucki", "Sierra", "JaJuNi",
/// "Steve Arche", "Burkes".
QString DitherMethodCaption(DitherMethod method);
/// "Color Reduction Monochrome", "Color Reduction 256 Gray Shades".
QString DitherReductionCaption(DitherReduction reduction);

/// Command-line names of the methods: nearest, floyd-steinberg, stucki, sierra, jajuni,
/// steve-arche, burkes.
QString DitherMethodName(DitherMethod method);
/// The method of a command-line name (case-insensitive); empty when unknown.
std::optional<DitherMethod> DitherMethodFromName(const QString& name);
/// All the command-line names, separated by ", ".
QString DitherMethodNames();

}  // namespace vt::canvas
