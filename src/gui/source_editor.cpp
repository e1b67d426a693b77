// SPDX-License-Identifier: MIT
#include "gui/source_editor.h"

#include <QFontDatabase>
#include <QPainter>
#include <QRegularExpression>
#include <QTextBlock>

namespace vt::gui {
namespace {

QTextCharFormat Format(const QColor& color, bool bold = false, bool italic = false) {
  QTextCharFormat f;
  f.setForeground(color);
  if (bold) f.setFontWeight(QFont::Bold);
  f.setFontItalic(italic);
  return f;
}

struct Rule {
  QRegularExpression pattern;
  QTextCharFormat format;
};

const QList<Rule>& Rules() {
  // Built once on first use and never changed: a constant table.
  static const QList<Rule> rules = [] {
    const QString keywords = QStringLiteral(
        "\\b(const|unsigned|signed|char|short|int|long|static|extern|void|struct|typedef|"
        "uint8_t|uint16_t|uint32_t|int8_t|int16_t|int32_t|PROGMEM|code|rom|"
        "db|dw|dd|DB|DW|DD|\\.db|\\.dw|\\.byte|\\.word|org|ORG|equ|EQU|DATA|Data)\\b");
    return QList<Rule>{
        {QRegularExpression(keywords), Format(QColor(0, 0, 160), true)},
        {QRegularExpression(QStringLiteral(
             "\\b(0[xX][0-9A-Fa-f]+|0[bB][01]+|[0-9][0-9A-Fa-f]*[hH]|[01]+[bB]|[0-9]+)\\b")),
         Format(QColor(160, 60, 0))},
        {QRegularExpression(QStringLiteral("\"[^\"]*\"")), Format(QColor(0, 128, 0))},
        {QRegularExpression(QStringLiteral("^\\s*#\\w+")), Format(QColor(128, 0, 128))},
        {QRegularExpression(QStringLiteral("(//|;).*$")), Format(QColor(110, 110, 110), false, true)},
    };
  }();
  return rules;
}

class Gutter final : public QWidget {
 public:
  explicit Gutter(CodeEditor* editor) : QWidget(editor), editor_(editor) {}
  QSize sizeHint() const override { return QSize(editor_->GutterWidth(), 0); }

 protected:
  void paintEvent(QPaintEvent* event) override { editor_->PaintGutter(event); }

 private:
  CodeEditor* editor_;
};

QFont Monospace() { return QFontDatabase::systemFont(QFontDatabase::FixedFont); }

}  // namespace

SourceHighlighter::SourceHighlighter(QTextDocument* document) : QSyntaxHighlighter(document) {}

void SourceHighlighter::highlightBlock(const QString& text) {
  for (const Rule& rule : Rules()) {
    auto it = rule.pattern.globalMatch(text);
    while (it.hasNext()) {
      const auto match = it.next();
      setFormat(static_cast<int>(match.capturedStart()), static_cast<int>(match.capturedLength()),
                rule.format);
    }
  }
  // Block comments may span lines: state 1 means "inside /* */".
  const QTextCharFormat comment = Format(QColor(110, 110, 110), false, true);
  int start = previousBlockState() == 1 ? 0 : static_cast<int>(text.indexOf(QStringLiteral("/*")));
  setCurrentBlockState(0);
  while (start >= 0) {
    const int end = static_cast<int>(text.indexOf(QStringLiteral("*/"), start));
    if (end < 0) {
      setCurrentBlockState(1);
      setFormat(start, static_cast<int>(text.size()) - start, comment);
      break;
    }
    setFormat(start, end + 2 - start, comment);
    start = static_cast<int>(text.indexOf(QStringLiteral("/*"), end + 2));
  }
}

CodeEditor::CodeEditor(QWidget* parent) : QPlainTextEdit(parent), gutter_(new Gutter(this)) {
  setFont(Monospace());
  setLineWrapMode(QPlainTextEdit::NoWrap);
  connect(this, &QPlainTextEdit::blockCountChanged, this,
          [this] { setViewportMargins(GutterWidth(), 0, 0, 0); });
  connect(this, &QPlainTextEdit::updateRequest, this, [this](const QRect& rect, int dy) {
    if (dy) gutter_->scroll(0, dy);
    else gutter_->update(0, rect.y(), gutter_->width(), rect.height());
  });
  setViewportMargins(GutterWidth(), 0, 0, 0);
  new SourceHighlighter(document());
}

int CodeEditor::GutterWidth() const {
  const int digits = static_cast<int>(QString::number(qMax(1, blockCount())).size());
  return 10 + fontMetrics().horizontalAdvance(QLatin1Char('9')) * qMax(3, digits);
}

void CodeEditor::resizeEvent(QResizeEvent* event) {
  QPlainTextEdit::resizeEvent(event);
  const QRect r = contentsRect();
  gutter_->setGeometry(QRect(r.left(), r.top(), GutterWidth(), r.height()));
}

void CodeEditor::PaintGutter(QPaintEvent* event) {
  QPainter painter(gutter_);
  painter.fillRect(event->rect(), QColor(236, 236, 236));
  painter.setPen(QColor(120, 120, 120));
  QTextBlock block = firstVisibleBlock();
  int top = qRound(blockBoundingGeometry(block).translated(contentOffset()).top());
  while (block.isValid() && top <= event->rect().bottom()) {
    const int height = qRound(blockBoundingRect(block).height());
    if (block.isVisible()) {
      painter.drawText(0, top, gutter_->width() - 4, height, Qt::AlignRight,
                       QString::number(block.blockNumber() + 1));
    }
    top += height;
    block = block.next();
  }
}

HexView::HexView(QWidget* parent) : QPlainTextEdit(parent) {
  setFont(Monospace());
  setReadOnly(true);
  setLineWrapMode(QPlainTextEdit::NoWrap);
}

void HexView::SetData(const QByteArray& bytes) {
  bytes_ = bytes;
  setPlainText(Format(bytes));
}

QString HexView::Format(const QByteArray& bytes) {
  QStringList rows;
  for (qsizetype row = 0; row < bytes.size(); row += 16) {
    QString hex, text;
    for (qsizetype i = row; i < row + 16; ++i) {
      if (i < bytes.size()) {
        const auto b = static_cast<unsigned char>(bytes.at(i));
        hex += QStringLiteral("%1 ").arg(b, 2, 16, QLatin1Char('0')).toUpper();
        text += (b >= 32 && b < 127) ? QChar(b) : QLatin1Char('.');
      } else {
        hex += QStringLiteral("   ");
      }
    }
    rows << QStringLiteral("%1  %2 %3").arg(row, 8, 16, QLatin1Char('0')).toUpper().arg(hex, text);
  }
  return rows.join(QLatin1Char('\n'));
}

EditorTabs::EditorTabs(QWidget* parent)
    : QTabWidget(parent), source_(new CodeEditor), hex_(new HexView), script_(new CodeEditor) {
  setObjectName(QStringLiteral("ExploForm2"));
  source_->setObjectName(QStringLiteral("SourceEditor"));
  addTab(source_, QStringLiteral("NewBitmap.h"));
  addTab(hex_, QStringLiteral("Hex"));
  addTab(script_, QStringLiteral("Script"));
}

void EditorTabs::ShowSource(const QString& name, const QString& text) {
  setTabText(0, name);
  source_->setPlainText(text);
  setCurrentIndex(0);
}

}  // namespace vt::gui
