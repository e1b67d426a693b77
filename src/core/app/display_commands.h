// SPDX-License-Identifier: MIT
#pragma once

// The display geometry commands of the menus and the settings panel: the settings routines
// with the state's messages, and the display size, whose keys and Work Canvas change together.

#include <QSize>
#include <QString>

#include "convert/constant_format.h"
#include "settings/geometry.h"

namespace vt::app {

struct AppState;
struct Services;

/// settings::SelectScanDirection with the state's settings and messages.
bool SelectScanDirection(
    AppState& state, Services& services, settings::ScanDirection direction,
    settings::CornerRule cornerRule = settings::CornerRule::SetDirectionCorner);
/// settings::SelectOriginCorner with the state's settings and log.
void SelectOriginCorner(AppState& state, Services& services, settings::OriginCorner corner);
/// settings::SelectBitOrder with the state's settings and log.
void SelectBitOrder(AppState& state, Services& services, bool msbFirst);
/// settings::SelectByteWidth with the state's settings and messages.
bool SelectByteWidth(AppState& state, Services& services, bool eightBits);
/// convert::SelectConstantFormat with the state's settings and log.
void SelectConstantFormat(AppState& state, Services& services, convert::ConstantFormat format);
/// The user-size edits (settings::LCDmatrixWidthEditChange and its height twin).
settings::TypedSize LCDmatrixWidthEditChange(AppState& state, Services& services,
                                             const QString& text);
settings::TypedSize LCDmatrixHeightEditChange(AppState& state, Services& services,
                                              const QString& text);

/// Sets the display size GWI x GHI (each at least 1) and gives the Work Canvas that size
/// (a canvas of another size is resized, which clears it).
void SetDisplaySize(AppState& state, int width, int height);

/// Selects a preset or custom size from the size menu: the user-defined marks USmat and UMATB
/// go off and the size is set as by SetDisplaySize.
void SelectPresetSize(AppState& state, QSize size);

/// Confirms the user-defined size MATW x MATH: remembers it in a custom slot, logs
/// "H:=<h> W:=<w>" and "Dot matrix size = User defined", tells " User Dot Matrix Size has been
/// defined ! ", makes it the display size and marks it active (USmat, UMATB). Then, if the size
/// does not fit the direction by UserSizePixelsPerByte, offers to switch to td (width) or tr
/// (height). A size below 1 is a fault: "User Size Define Error" in the log and
/// "User Size Define Error !" shown, nothing changed. Returns whether the size was set.
bool LCDmatrixSizeUserDefinedClick(AppState& state, Services& services);

}  // namespace vt::app
