// SPDX-License-Identifier: MIT
#include "convert/color_lut.h"

#include <QLocale>

#include "convert/constant_format.h"
#include "convert/data_text.h"

namespace vt::convert {
namespace {

QString Hex6(canvas::Color color) {
  return QStringLiteral("%1").arg(color & 0xFFFFFF, 6, 16, QLatin1Char('0')).toUpper();
}

}  // namespace

QString ColorLutLine(const settings::Settings& s, canvas::Color color, int index, bool last) {
  const settings::DataFormatSettings& f = s.format;
  QString value;
  switch (CurrentConstantFormat(f)) {
    case ConstantFormat::X:
      value = QStringLiteral("0x") + Hex6(color);
      break;
    case ConstantFormat::H:
      value = QStringLiteral("0") + Hex6(color) + QStringLiteral("h");
      break;
    case ConstantFormat::PlusHPlus:
      value = f.VALpref + Hex6(color) + f.VALSUF;
      break;
    case ConstantFormat::PlusBPlus:
    case ConstantFormat::PlusDPlus:
      value = f.VALpref + QString::number(color) + f.VALSUF;
      break;
    case ConstantFormat::ZeroB:
    case ConstantFormat::B:
      value = QString::number(color);
      break;
  }
  const EndOfLineFlags eol = EndOfLineFlagsOf(f);
  if (!(last && f.dellas)) {
    value += eol.EolStr   ? eol.eolst
             : eol.Eolcom ? QStringLiteral(",")
             : eol.EolSem ? QStringLiteral(";")
                          : QString();
  }
  if (!s.comment.Nodcom) {
    const CommentStyle style = CommentStyleOf(s.comment);
    value += style.c ? QStringLiteral("   //") : QStringLiteral("   ") + style.opener;
    value += QString::number(index);
  }
  return value;
}

}  // namespace vt::convert
