// SPDX-License-Identifier: MIT
#include "platform/file_picker.h"

#include <gtest/gtest.h>

#include "platform/text_prompt.h"
#include "support/scripted_file_picker.h"

namespace vt::platform {
namespace {

// The shortcuts ask for their kind and hand back one path; a cancel, an empty answer or an
// empty path is no choice at all.
TEST(FilePicker, TheShortcutsAskTheirKindAndTakeOneAnswer) {
  const struct {
    const char* name;
    std::optional<QStringList> answer;
    std::optional<QString> one;
  } answers[] = {
      {"cancel", std::nullopt, std::nullopt},
      {"empty list", QStringList{}, std::nullopt},
      {"empty path", QStringList{QString()}, std::nullopt},
      {"a path", QStringList{"/a/b.png"}, QStringLiteral("/a/b.png")},
      {"two paths", QStringList{"/a/b.png", "/a/c.png"}, QStringLiteral("/a/b.png")},
  };
  for (const auto& a : answers) {
    SCOPED_TRACE(a.name);
    test::ScriptedFilePicker picker;
    for (int i = 0; i < 3; ++i) {
      if (a.answer) {
        picker.ChooseFiles(*a.answer);
      } else {
        picker.Cancel();
      }
    }
    EXPECT_EQ(picker.OpenFile("Open", "/a", {"Pictures (*.png)"}), a.one);
    EXPECT_EQ(picker.SaveFile("Save", "/a", "L.LOG", {}), a.one);
    EXPECT_EQ(picker.ChooseFolder("Folder", "/a"), a.one);
    ASSERT_EQ(picker.requests.size(), 3);
    EXPECT_EQ(picker.requests[0].kind, PickKind::OpenFile);
    EXPECT_EQ(picker.requests[0].filters, QStringList{"Pictures (*.png)"});
    EXPECT_EQ(picker.requests[1].kind, PickKind::SaveFile);
    EXPECT_EQ(picker.requests[1].fileName, "L.LOG");
    EXPECT_EQ(picker.requests[2].kind, PickKind::Folder);
    EXPECT_EQ(picker.requests[2].folder, "/a");
  }
}

TEST(FilePicker, OpenFilesKeepsEveryPathAndAnEmptyChoiceIsNone) {
  test::ScriptedFilePicker picker;
  picker.ChooseFiles({"/a/b.png", "/a/c.png"});
  picker.ChooseFiles({});
  EXPECT_EQ(picker.OpenFiles("Open", "/a", {}), (QStringList{"/a/b.png", "/a/c.png"}));
  EXPECT_EQ(picker.OpenFiles("Open", "/a", {}), std::nullopt);
  EXPECT_EQ(picker.OpenFiles("Open", "/a", {}), std::nullopt);  // nothing queued: cancelled
  ASSERT_EQ(picker.requests.size(), 3);
  EXPECT_EQ(picker.requests[0].kind, PickKind::OpenFiles);
}

// Headless runs have nobody to ask: every request is refused as a cancel.
TEST(FilePicker, TheHeadlessPickerAndPromptRefuseEveryRequest) {
  NoFilePicker picker;
  NoTextPrompt prompt;
  EXPECT_EQ(picker.OpenFile("Open", "/a", {}), std::nullopt);
  EXPECT_EQ(picker.OpenFiles("Open", "/a", {}), std::nullopt);
  EXPECT_EQ(picker.SaveFile("Save", "/a", "x", {}), std::nullopt);
  EXPECT_EQ(picker.ChooseFolder("Folder", "/a"), std::nullopt);
  EXPECT_EQ(prompt.Ask({"Name", "Name", "default"}), std::nullopt);
}

}  // namespace
}  // namespace vt::platform
