// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <vector>

namespace vt::canvas {

/// The undo stack (SaveTable): one full copy of the canvas per edit, no differences, nothing on
/// disk. UndoPosition is the index of the current state (-1 before the first push), UndoTop the
/// highest index pushed. The stack also keeps the enabled state of the undo and redo buttons.
/// This class moves the positions only; WorkCanvas copies the entries in and out of the bitmap.
class UndoStack {
 public:
  static constexpr int kMaxEntries = 10000;

  /// Stores `bitmap` one above the current position; the states above are dropped. Returns
  /// false when the slot lies past the last of the kMaxEntries: the position then stays
  /// advanced and nothing is stored.
  [[nodiscard]] bool Push(const QImage& bitmap);
  /// One step back: the position goes down by one, stopping at 0.
  void StepBack();
  /// One step forward. Returns false, and only disables redo, while UndoTop is 0.
  [[nodiscard]] bool StepForward();
  /// Goes to entry 0, the original picture.
  void StepToOriginal();
  /// Clamps the position to the last entry and returns the entry there, or null when the slot
  /// is empty (the canvas then stays as it is). Disables undo at position 0.
  const QImage* Current();
  /// Entry 0, or null while nothing was pushed.
  const QImage* Original() const;

  /// Remembers the current position as that of the picture loaded first: undo stops there.
  void MarkFirstLoaded() { firstLoaded_ = position_; }

  int UndoPosition() const { return position_; }
  int UndoTop() const { return top_; }
  int Size() const { return static_cast<int>(table_.size()); }
  bool UndoEnabled() const { return undoEnabled_; }
  bool RedoEnabled() const { return redoEnabled_; }
  /// Flash of the original: the position goes back to the top without restoring anything.
  void ReturnToTop() { position_ = top_; }

 private:
  std::vector<QImage> table_;
  int position_ = -1;
  int top_ = 0;
  int firstLoaded_ = 0;
  bool undoEnabled_ = false;
  bool redoEnabled_ = false;
};

}  // namespace vt::canvas
