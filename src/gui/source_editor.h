// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QPlainTextEdit>
#include <QSyntaxHighlighter>
#include <QTabWidget>

namespace vt::gui {

/// Colours C and assembler source: comments, strings, numbers in the system's constant forms
/// (0x.., ..H, 0b.., ..b, decimals), preprocessor lines and the keywords of both languages.
class SourceHighlighter final : public QSyntaxHighlighter {
  Q_OBJECT
 public:
  explicit SourceHighlighter(QTextDocument* document);

 protected:
  void highlightBlock(const QString& text) override;
};

/// A plain text editor with a line number gutter, monospace, no wrapping.
class CodeEditor final : public QPlainTextEdit {
  Q_OBJECT
 public:
  explicit CodeEditor(QWidget* parent = nullptr);
  int GutterWidth() const;
  void PaintGutter(QPaintEvent* event);

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  QWidget* gutter_ = nullptr;
};

/// A read-only view of bytes: offset, sixteen bytes in hexadecimal and their printable form per
/// row. It takes the bytes as they stand, so any byte store can feed it.
class HexView final : public QPlainTextEdit {
  Q_OBJECT
 public:
  explicit HexView(QWidget* parent = nullptr);
  void SetData(const QByteArray& bytes);
  const QByteArray& Data() const { return bytes_; }
  /// The rows as shown: "00000000  41 42 ...  AB..".
  static QString Format(const QByteArray& bytes);

 private:
  QByteArray bytes_;
};

/// The text and hex editors: the source tab (named after the source file), the hex tab and the
/// script tab that the modes rename.
class EditorTabs final : public QTabWidget {
  Q_OBJECT
 public:
  explicit EditorTabs(QWidget* parent = nullptr);
  CodeEditor* Source() const { return source_; }
  HexView* Hex() const { return hex_; }
  CodeEditor* Script() const { return script_; }
  /// Shows `text` in the source tab under `name` and brings the tab forward.
  void ShowSource(const QString& name, const QString& text);
  void SetScriptTabName(const QString& name) { setTabText(2, name); }

 private:
  CodeEditor* source_ = nullptr;
  HexView* hex_ = nullptr;
  CodeEditor* script_ = nullptr;
};

}  // namespace vt::gui
