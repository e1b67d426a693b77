// SPDX-License-Identifier: MIT
#include "app/modes.h"

#include "app/canvas_commands.h"
#include "app/messages.h"
#include "app/state.h"

namespace vt::app {
namespace {

namespace Answer = platform::Answer;
using platform::DialogType;
namespace Buttons = platform::Buttons;

constexpr ModeInfo kModes[] = {
    {SpecialMode::VectorDesign, "Vector Design", 10, false, "VectorDesignToolButtonClick",
     "QuitVectorDesign"},
    {SpecialMode::FontScript, "Font Script", 2, false, "CreateFontscript1Click",
     "QuitFontscriptClick"},
    {SpecialMode::EditableFont, "Editable Font", 5, false, "OpenEditableButtonClick",
     "QuitAnEditableFontClick"},
    {SpecialMode::TouchPanel, "Touch Panel", 1, false, "Createtouchpanelscript1Click",
     "QuittouchpanelscriptClick"},
    {SpecialMode::Fields, "Fields", -1, false, "CreateFieldsButtonClick", "QuitFieldsScriptClick"},
    {SpecialMode::Animation, "Animation", -1, true, "AnimationModeButtonClick",
     "AnimationModeButtonClick"},
    {SpecialMode::HeaderEdit, "Header Edit", -1, true, "EditHeaderButtonClick",
     "EditHeaderButtonClick"},
    {SpecialMode::BatchEdition, "Batch Edition", -1, false, "CreatePostProClick", "QuitPostClick"},
};

/// The order in which QuitModeButtonClick looks for the active mode.
constexpr SpecialMode kQuitOrder[] = {
    SpecialMode::BatchEdition, SpecialMode::FontScript,   SpecialMode::Fields,
    SpecialMode::TouchPanel,   SpecialMode::EditableFont, SpecialMode::HeaderEdit,
    SpecialMode::Animation,    SpecialMode::VectorDesign,
};

/// What a row of the mode gate does with the first button after "Cancel" and "No Saves".
enum class ThirdButton { None, NoSaves, LoadFile };

struct GateRow {
  bool ModeFlags::*flag;
  int exempt;  ///< the request that does not count as a conflict
  const char* text;
  QStringList captions;
  ThirdButton third;
};

QStringList Captions(std::initializer_list<const char*> texts) {
  QStringList list;
  for (const char* t : texts) list << QString::fromLatin1(t);
  return list;
}

QList<GateRow> GateRows() {
  const GateRow animation{&ModeFlags::AnimationActive, 0,
                          "Animation creation mode is active ! \rQuit Animation or Cancel ",
                          Captions({"Quit", "Cancel"}), ThirdButton::None};
  const GateRow programming{
      &ModeFlags::VectorModeActive, 7,
      "Vector Programming mode is active ! \rQuit Vector Programming or Cancel ",
      Captions({"Quit Script", "Cancel"}), ThirdButton::None};
  const GateRow touch{
      &ModeFlags::TouchScriptActive, 1,
      "Touch panel script creation mode is active ! \rQuit script creation or Cancel ",
      Captions({"Quit Script", "Cancel"}), ThirdButton::None};
  const GateRow font{&ModeFlags::FontScriptActive, 2,
                     "Font Script creation mode is active ! \rQuit script creation or Cancel ",
                     Captions({"Quit Script", "Cancel", "No Saves"}), ThirdButton::NoSaves};
  const GateRow segmented{
      &ModeFlags::SegmentedFontActive, 4,
      "Segmented Font creation mode is active ! \rQuit script creation or Cancel ",
      Captions({"Quit Font", "Cancel"}), ThirdButton::None};
  const GateRow editable{
      &ModeFlags::EditableFontActive, 5,
      "Editable Font creation mode is active ! \rQuit script creation or Cancel ",
      Captions({"Quit Font", "Cancel", "No Saves"}), ThirdButton::NoSaves};
  const GateRow vectors{&ModeFlags::VectorModeActive, 6,
                        "Vectors Work Canvas mode is active ! \rQuit Vector Design Mode or Cancel ",
                        Captions({"Quit Vectors", "Cancel", "No Saves"}), ThirdButton::NoSaves};
  const GateRow vectorsLoad{
      &ModeFlags::VectorModeActive, 6,
      "Vectors Work Canvas mode is active ! \rQuit Vectors Mode , Load File or Cancel ",
      Captions({"Quit Vectors", "Cancel", "Load File"}), ThirdButton::LoadFile};
  // Rows 4 to 6 come twice: the second pass is the plain form of the same questions.
  return {animation, programming, touch,     font,     segmented,  editable,
          vectors,   font,        segmented, editable, vectorsLoad};
}

int ButtonSetFor(const QStringList& captions) {
  return captions.size() > 2 ? Buttons::Ok | Buttons::Cancel | Buttons::Retry
                             : Buttons::Ok | Buttons::Cancel;
}

int Ask(AppState& state, Services& services, const QString& text, const QStringList& captions) {
  return MyMessageDialog(state, services.dialogs, text, DialogType::Warning,
                         static_cast<int>(captions.size()) - 1, captions, ButtonSetFor(captions));
}

/// QuitVectorDesign's own question, when no vector tool plugged in its leave routine.
bool LeaveVectorDesign(AppState& state, Services& services, const ShellHooks& hooks) {
  if (state.modes.QuitNoSave) return true;
  const int answer = MessageDlgA(
      state, services.dialogs,
      QStringLiteral(" Quit Vector Design Mode ..\r Save Vector Design in Work Canvas to File ? "),
      QStringLiteral("Error"), 0, Buttons::Yes | Buttons::No | Buttons::Cancel,
      DialogType::Confirmation);
  if (answer == Answer::Cancel) return false;
  if (answer == Answer::Yes && hooks.saveArtwork) hooks.saveArtwork(state, services);
  return true;
}

}  // namespace

std::span<const ModeInfo> ModeTable() { return kModes; }

const ModeInfo& Info(SpecialMode mode) { return kModes[static_cast<int>(mode)]; }

bool& ModeFlag(ModeFlags& flags, SpecialMode mode) {
  switch (mode) {
    case SpecialMode::VectorDesign:
      return flags.VectorModeActive;
    case SpecialMode::FontScript:
      return flags.FontScriptActive;
    case SpecialMode::EditableFont:
      return flags.EditableFontActive;
    case SpecialMode::TouchPanel:
      return flags.TouchScriptActive;
    case SpecialMode::Fields:
      return flags.FieldsScriptActive;
    case SpecialMode::Animation:
      return flags.AnimationActive;
    case SpecialMode::HeaderEdit:
      return flags.HeaderEditActive;
    case SpecialMode::BatchEdition:
      return flags.BatchEditActive;
  }
  return flags.SpecialModeActive;
}

bool ModeFlag(const ModeFlags& flags, SpecialMode mode) {
  return ModeFlag(const_cast<ModeFlags&>(flags), mode);
}

std::optional<SpecialMode> ActiveMode(const ModeFlags& flags) {
  for (const SpecialMode mode : kQuitOrder) {
    if (ModeFlag(flags, mode)) return mode;
  }
  return std::nullopt;
}

bool EnterMode(AppState& state, Services& services, SpecialMode mode) {
  const ModeInfo& info = Info(mode);
  if (info.checkModeRequest >= 0 && CheckMode(state, services, info.checkModeRequest)) {
    return false;
  }
  const ModeRoutines& routines = state.modeRoutines[static_cast<int>(mode)];
  if (routines.enter && !routines.enter(state, services)) return false;
  ModeFlag(state.modes, mode) = true;
  state.modes.SpecialModeActive = true;
  state.log.StatusBarAndLog(QString::fromLatin1(info.name) + QStringLiteral(" Mode"));
  if (mode == SpecialMode::VectorDesign) DisableModeChange(state);
  return true;
}

bool LeaveMode(AppState& state, Services& services, SpecialMode mode) {
  const ModeRoutines& routines = state.modeRoutines[static_cast<int>(mode)];
  const bool left = routines.leave ? routines.leave(state, services)
                    : mode == SpecialMode::VectorDesign
                        ? LeaveVectorDesign(state, services, state.shellHooks)
                        : true;
  if (!left) return false;
  ModeFlag(state.modes, mode) = false;
  state.modes.SpecialModeActive = false;
  state.modes.QuitNoSave = false;
  state.ThirdEditorTabName = QStringLiteral("Script");
  if (mode == SpecialMode::VectorDesign) EnableModeChange(state);
  state.log.StatusBarAndLog(kNormalModeText);
  return true;
}

bool ToggleMode(AppState& state, Services& services, SpecialMode mode) {
  return ModeFlag(state.modes, mode) ? LeaveMode(state, services, mode)
                                     : EnterMode(state, services, mode);
}

bool CheckMode(AppState& state, Services& services, int requested) {
  for (const GateRow& row : GateRows()) {
    if (!(state.modes.*row.flag) || requested == row.exempt) continue;
    const int answer = Ask(state, services, QString::fromLatin1(row.text), row.captions);
    if (answer == Answer::Cancel) return true;
    if (answer == Answer::Retry) {  // the third button
      if (row.third == ThirdButton::LoadFile) {
        state.modes.VectorLoadFile = true;
        return false;
      }
      if (row.third == ThirdButton::NoSaves) state.modes.QuitNoSave = true;
    }
    QuitModeButtonClick(state, services);
    return true;
  }
  return false;
}

bool QuitModeButtonClick(AppState& state, Services& services) {
  state.log.StatusBarAndLog(QStringLiteral("Quit Special Mode Button"));
  const auto mode = ActiveMode(state.modes);
  return !mode || LeaveMode(state, services, *mode);
}

void ExitmenuButtonClick(AppState& state, Services& services) {
  state.log.StatusBarAndLog(QStringLiteral("Exit Special Mode Main Menu"));
  if (!state.modes.SpecialModeActive) {
    MessageDlgA(state, services.dialogs, QStringLiteral("No special mode active"), QString(), 0,
                Buttons::Ok, DialogType::Information);
    return;
  }
  QuitModeButtonClick(state, services);
}

void ExitSpecialMode1Click(AppState& state, Services& services) {
  if (state.modes.SpecialModeActive) QuitModeButtonClick(state, services);
}

bool ResetAndCheckColorMode(AppState& state, Services& services) {
  state.PaletteCaption = kDefaultPaletteCaption;
  const struct {
    bool ModeFlags::*flag;
    const char* text;
  } rows[] = {
      {&ModeFlags::AnimationActive,
       "Mode change not possible while an animation is active, first save artwork, quit "
       "animation mode "},
      {&ModeFlags::BatchEditActive,
       " Mode change not possible while Processing batch creation is active, first quit this "
       "mode "},
      {&ModeFlags::FontScriptActive,
       " Mode change not possible while Font creation is active, first quit Font Creation mode  "},
      {&ModeFlags::TouchScriptActive,
       " Mode change not possible while touch panel creation is active, first quit touch panel "
       "mode "},
  };
  for (const auto& row : rows) {
    if (!(state.modes.*row.flag)) continue;
    const int answer =
        Ask(state, services, QString::fromLatin1(row.text), Captions({"OK", "Quit Mode"}));
    if (answer != Answer::Cancel) return true;  // "OK", or the box closed
    QuitModeButtonClick(state, services);
    return false;
  }
  if (SelectionPending(state)) {
    const int answer =
        Ask(state, services,
            QStringLiteral(" Floating Selection layer has not been pasted to Work Canvas !\r Paste "
                           "now, Discard selection or Cancel ? "),
            Captions({"No Action", "Discard", "Cancel"}));
    if (answer == Answer::Cancel) EscapeSelection(state);  // "Discard"
    return true;
  }
  return false;
}

void DisableModeChange(AppState& state) { state.modes.ModeChangeDisabled = true; }
void EnableModeChange(AppState& state) { state.modes.ModeChangeDisabled = false; }

}  // namespace vt::app
