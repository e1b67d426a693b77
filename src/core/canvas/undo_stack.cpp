// SPDX-License-Identifier: MIT
#include "canvas/undo_stack.h"

#include <algorithm>

namespace vt::canvas {

bool UndoStack::Push(const QImage& bitmap) {
  ++position_;
  top_ = position_;
  // The redo states above are not freed one by one: the table is cut and their slots reused.
  table_.resize(std::clamp(top_ + 1, 1, kMaxEntries));
  undoEnabled_ = true;
  redoEnabled_ = position_ != top_;
  if (position_ >= Size()) return false;
  table_[position_] = bitmap.copy();
  return true;
}

void UndoStack::StepBack() {
  --position_;
  if (position_ <= 0) {
    position_ = 0;
    undoEnabled_ = false;
  }
  redoEnabled_ = true;
  if (position_ == firstLoaded_) undoEnabled_ = false;
}

bool UndoStack::StepForward() {
  if (top_ == 0) {
    redoEnabled_ = false;
    return false;
  }
  ++position_;
  if (position_ >= top_) redoEnabled_ = false;
  undoEnabled_ = true;
  return true;
}

void UndoStack::StepToOriginal() {
  position_ = 0;
  undoEnabled_ = false;
  if (top_ != 0) redoEnabled_ = true;
}

const QImage* UndoStack::Current() {
  if (!table_.empty() && position_ > Size() - 1) position_ = Size() - 1;
  if (position_ == 0) undoEnabled_ = false;
  if (position_ < 0 || position_ >= Size() || table_[position_].isNull()) return nullptr;
  return &table_[position_];
}

const QImage* UndoStack::Original() const {
  return table_.empty() || table_.front().isNull() ? nullptr : &table_.front();
}

}  // namespace vt::canvas
