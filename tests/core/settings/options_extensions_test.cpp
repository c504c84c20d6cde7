// The extension filter: allowed entries, keys, counters and captions.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/forms/keys.h"
#include "core/settings/options.h"
#include "tests/support/test_program.h"

namespace morvex::test {
namespace {

const ShownMessage kMalformed = {"Incorrect input format ! ", MessageButtons::kOk,
                                 MessageIcon::kNone};

class Extensions : public testing::Test {
 protected:
  Extensions() { imOpties_Click(test_.program); }

  // Types an extension into the entry field and adds it.
  void Add(const std::string& typed) {
    window_.txtExtensie.text = typed;
    txtExtensie_KeyDown(test_.program, kKeyEnter, kShiftControl);
  }
  void Fill(const std::vector<ListEntry>& entries, int current = -1) {
    window_.lstExtensie.entries = entries;
    window_.lstExtensie.current = current;
  }
  std::vector<ListEntry> Entries() const { return window_.lstExtensie.entries; }
  std::string Selected() const { return test_.program.frmMorvex.lblExtensions.caption; }

  TestProgram test_;
  OptionsForm& window_ = test_.program.frmOpties;
};

TEST_F(Extensions, ATypedExtensionIsAddedWithAPoint) {
  for (const auto& [typed, entry] :
       {std::pair("txt", ".txt"), std::pair(".txt", ".txt"), std::pair(".", ".")}) {
    SCOPED_TRACE(typed);
    Fill({});
    Add(typed);
    EXPECT_EQ(Entries(), (std::vector<ListEntry>{{entry, true}}));
    EXPECT_EQ(window_.txtExtensie.text.get(), "");
    EXPECT_TRUE(test_.user.messages.empty());
  }
}

TEST_F(Extensions, TypingTwoPointsShowsTheMessageAndAddsNothing) {
  Add("a.b.c");
  EXPECT_EQ(test_.user.messages, (std::vector<ShownMessage>{kMalformed}));
  EXPECT_TRUE(Entries().empty());
}

TEST_F(Extensions, AnotherCaseIsAnotherEntry) {
  Add(".txt");
  Add(".TXT");
  EXPECT_EQ(Entries(), (std::vector<ListEntry>{{".txt", true}, {".TXT", true}}));
}

TEST_F(Extensions, AnEntryThatIsThereOnlyClearsTheField) {
  Fill({{".txt", false}, {".doc", true}});
  Add("file.txt");
  EXPECT_EQ(Entries(), (std::vector<ListEntry>{{".txt", false}, {".doc", true}}));
  EXPECT_EQ(window_.txtExtensie.text.get(), "");
}

TEST_F(Extensions, EntriesKeepTheOrderOfAdding) {
  for (const char* typed : {"z", "a", "m"}) Add(typed);
  EXPECT_EQ(Entries(), (std::vector<ListEntry>{{".z", true}, {".a", true}, {".m", true}}));
}

struct FormatCase {
  std::string typed;
  std::string entry;
};

TEST_F(Extensions, TheFormatIsAPointAndTheExtension) {
  const std::vector<FormatCase> cases = {
      {"txt", ".txt"},   {".txt", ".txt"},    {"file.txt", ".txt"}, {"txt.txt", ".txt"},
      {"TxT", ".TxT"},   {"", "."},           {".", "."},           {"a.", "."},
      {" txt", ". txt"}, {"a b.c d", ".c d"},
  };
  for (const FormatCase& format : cases) {
    EXPECT_EQ(FormatExtensie(test_.program, format.typed), format.entry) << format.typed;
  }
  EXPECT_TRUE(test_.user.messages.empty());
}

TEST_F(Extensions, AnotherPointIsRefusedWithAMessage) {
  std::vector<ShownMessage> expected;
  for (const char* typed : {"a.b.c", ".a.b", "..", "..txt", ".txt.", "a..", "file.tar.gz"}) {
    EXPECT_EQ(FormatExtensie(test_.program, typed), "") << typed;
    expected.push_back(kMalformed);
    EXPECT_EQ(test_.user.messages, expected) << typed;
  }
}

TEST_F(Extensions, ControlDeleteRemovesTheCurrentEntryWhetherSelectedOrNot) {
  for (const bool selected : {false, true}) {
    Fill({{".a", true}, {".b", selected}, {".c", true}}, 1);
    txtExtensie_KeyDown(test_.program, kKeyDelete, kShiftControl);
    EXPECT_EQ(Entries(), (std::vector<ListEntry>{{".a", true}, {".c", true}}));
  }
}

TEST_F(Extensions, ControlDeleteWithoutACurrentEntryRemovesNothing) {
  for (const int current : {-1, 2, 100}) {
    Fill({{".a", true}, {".b", true}}, current);
    txtExtensie_KeyDown(test_.program, kKeyDelete, kShiftControl);
    EXPECT_EQ(Entries().size(), 2u) << current;
  }
}

TEST_F(Extensions, RemovingTheLastEntryEmptiesTheList) {
  Fill({{".a", true}}, 0);
  txtExtensie_KeyDown(test_.program, kKeyDelete, kShiftControl);
  EXPECT_TRUE(Entries().empty());
  EXPECT_EQ(window_.lstExtensie.current.get(), -1);
  txtExtensie_KeyDown(test_.program, kKeyDelete, kShiftControl);
  EXPECT_TRUE(Entries().empty());
}

TEST_F(Extensions, TheMarkStaysOnAnEntryWhenTheLastIsRemoved) {
  Fill({{".a", true}, {".b", true}}, 1);
  txtExtensie_KeyDown(test_.program, kKeyDelete, kShiftControl);
  EXPECT_EQ(window_.lstExtensie.current.get(), 0);
}

TEST_F(Extensions, BothCommandsWorkInTheListToo) {
  window_.txtExtensie.text = "txt";
  lstExtensie_KeyDown(test_.program, kKeyEnter, kShiftControl);
  EXPECT_EQ(Entries(), (std::vector<ListEntry>{{".txt", true}}));
  window_.lstExtensie.current = 0;
  lstExtensie_KeyDown(test_.program, kKeyDelete, kShiftControl);
  EXPECT_TRUE(Entries().empty());
}

TEST_F(Extensions, TheListKnowsNoOtherKey) {
  window_.lstExtensie.visible = true;
  lstExtensie_KeyDown(test_.program, kKeyEscape, 0);
  lstExtensie_KeyDown(test_.program, kKeyDown, kShiftAlt);
  EXPECT_TRUE(window_.lstExtensie.visible.get());
}

TEST_F(Extensions, KeysWithoutControlOrWithMoreNeitherAddNorRemove) {
  Fill({{".a", true}}, 0);
  window_.txtExtensie.text = "txt";
  for (const int shift : {0, 1, kShiftAlt, kShiftControl | 1, kShiftControl | kShiftAlt}) {
    for (const int key : {kKeyEnter, kKeyDelete}) {
      txtExtensie_KeyDown(test_.program, key, shift);
      lstExtensie_KeyDown(test_.program, key, shift);
    }
  }
  EXPECT_EQ(Entries(), (std::vector<ListEntry>{{".a", true}}));
  EXPECT_EQ(window_.txtExtensie.text.get(), "txt");
}

TEST_F(Extensions, AltDownShowsAndHidesTheList) {
  window_.lstExtensie.visible = false;
  txtExtensie_KeyDown(test_.program, kKeyDown, kShiftAlt);
  EXPECT_TRUE(window_.lstExtensie.visible.get());
  txtExtensie_KeyDown(test_.program, kKeyDown, kShiftAlt);
  EXPECT_FALSE(window_.lstExtensie.visible.get());
  txtExtensie_KeyDown(test_.program, kKeyDown, 0);
  EXPECT_FALSE(window_.lstExtensie.visible.get());
}

TEST_F(Extensions, EscapeHidesTheList) {
  window_.lstExtensie.visible = true;
  txtExtensie_KeyDown(test_.program, kKeyEscape, 0);
  EXPECT_FALSE(window_.lstExtensie.visible.get());
  txtExtensie_KeyDown(test_.program, kKeyEscape, 0);
  EXPECT_FALSE(window_.lstExtensie.visible.get());
}

TEST_F(Extensions, OtherKeysDoNothing) {
  Fill({{".a", true}}, 0);
  window_.lstExtensie.visible = true;
  window_.txtExtensie.text = "txt";
  for (const int key : {1, 65, kKeyUp, kKeyDown}) txtExtensie_KeyDown(test_.program, key, 0);
  txtExtensie_KeyDown(test_.program, 65, kShiftControl);
  EXPECT_TRUE(window_.lstExtensie.visible.get());
  EXPECT_EQ(Entries(), (std::vector<ListEntry>{{".a", true}}));
  EXPECT_EQ(window_.txtExtensie.text.get(), "txt");
}

TEST_F(Extensions, TheButtonTogglesTheListAndFocusesTheField) {
  for (const bool shown : {true, false}) {
    window_.lstExtensie.visible = !shown;
    window_.focus = nullptr;
    cmdListExtensie_Down_Click(test_.program);
    EXPECT_EQ(window_.lstExtensie.visible.get(), shown);
    EXPECT_EQ(window_.focus.get(), &window_.txtExtensie);
  }
}

TEST_F(Extensions, TheFieldExplainsItsKeysOnceItHasTheFocus) {
  EXPECT_EQ(window_.txtExtensie.tool_tip.get(), "");
  txtExtensie_GotFocus(test_.program);
  EXPECT_EQ(window_.txtExtensie.tool_tip.get(), "add: CTRL + <enter>  ;  delete:  CTRL + <delete>");
}

TEST_F(Extensions, LeavingTheListCountsAndShowsTheSelectedOnes) {
  test_.program.frmMorvex.lblExtensions.caption = ".old";
  Fill({{".a", true}, {".b", false}, {".c", true}});
  lstExtensie_Validate(test_.program);
  EXPECT_EQ(test_.program.settings.N_Extension_Selected, 2);
  EXPECT_EQ(test_.program.settings.N_Extension_Total, 3);
  EXPECT_EQ(Selected(), ".a.c");
}

TEST_F(Extensions, LeavingAListWithNothingSelectedEmptiesTheMainWindowsLabel) {
  test_.program.frmMorvex.lblExtensions.caption = ".old";
  Fill({{".a", false}});
  lstExtensie_Validate(test_.program);
  EXPECT_EQ(Selected(), "");
  EXPECT_EQ(test_.program.settings.N_Extension_Selected, 0);
  EXPECT_EQ(test_.program.settings.N_Extension_Total, 1);
}

TEST_F(Extensions, SelectingMarksOneEntryAndTheCountersFollow) {
  Fill({{".a", true}, {".b", false}});
  lstExtensie_Select(test_.program, 1, true);
  EXPECT_EQ(Entries(), (std::vector<ListEntry>{{".a", true}, {".b", true}}));
  EXPECT_EQ(window_.lstExtensie.current.get(), 1);
  EXPECT_EQ(window_.lblExtensies.caption.get(), "extensions 2(2)");
  lstExtensie_Select(test_.program, 0, false);
  EXPECT_EQ(Entries(), (std::vector<ListEntry>{{".a", false}, {".b", true}}));
  EXPECT_EQ(window_.lstExtensie.current.get(), 0);
  EXPECT_EQ(test_.program.settings.N_Extension_Selected, 1);
}

TEST_F(Extensions, SelectingOutsideOfTheListDoesNothing) {
  Fill({{".a", true}}, 0);
  lstExtensie_Select(test_.program, 1, true);
  lstExtensie_Select(test_.program, static_cast<std::size_t>(-1), true);
  EXPECT_EQ(Entries(), (std::vector<ListEntry>{{".a", true}}));
  EXPECT_EQ(window_.lstExtensie.current.get(), 0);
}

TEST_F(Extensions, TheCountersFollowAddingAndRemoving) {
  Add("a");
  Add("b");
  EXPECT_EQ(test_.program.settings.N_Extension_Selected, 2);
  EXPECT_EQ(test_.program.settings.N_Extension_Total, 2);
  EXPECT_EQ(window_.lblExtensies.caption.get(), "extensions 2(2)");
  window_.lstExtensie.current = 0;
  txtExtensie_KeyDown(test_.program, kKeyDelete, kShiftControl);
  EXPECT_EQ(test_.program.settings.N_Extension_Total, 1);
  EXPECT_EQ(window_.lblExtensies.caption.get(), "extensions 1(1)");
}

}  // namespace
}  // namespace morvex::test
