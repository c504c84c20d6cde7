// Controls announce their changes, and their values stay in their range.
#include "core/forms/control.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

namespace morvex::test {
namespace {

TEST(ChangeNotice, CountsEveryChangeAndCallsTheListener) {
  ChangeNotice notice;
  int called = 0;
  notice.Changed();
  EXPECT_EQ(notice.revision(), 1u) << "a listener is not needed";
  notice.on_change = [&] { ++called; };
  notice.Changed();
  notice.Changed();
  EXPECT_EQ(notice.revision(), 3u);
  EXPECT_EQ(called, 2);
}

TEST(Watched, GivesNoticeOnlyOfAnotherValue) {
  ChangeNotice notice;
  Watched<std::string> text(notice, "a");
  EXPECT_EQ(notice.revision(), 0u) << "the first value is no change";
  text = "b";
  EXPECT_EQ(notice.revision(), 1u);
  EXPECT_EQ(text.get(), "b");
  text = "b";
  EXPECT_EQ(notice.revision(), 1u);
  text = "";
  EXPECT_EQ(notice.revision(), 2u);
}

TEST(Watched, TheListenerSeesTheNewValue) {
  ChangeNotice notice;
  Watched<int> number(notice, 1);
  int seen = 0;
  notice.on_change = [&] { seen = number; };
  number = 2;
  EXPECT_EQ(seen, 2);
}

TEST(Watched, StartsWithTheEmptyValue) {
  ChangeNotice notice;
  EXPECT_EQ(Watched<std::string>(notice).get(), "");
  EXPECT_EQ(Watched<int>(notice).get(), 0);
}

TEST(ControlState, IsEnabledVisibleAndBlackAtFirst) {
  ChangeNotice notice;
  const Control control(notice, {1, 2, 3, 4}, 5);
  EXPECT_TRUE(control.enabled.get());
  EXPECT_TRUE(control.visible.get());
  EXPECT_EQ(control.colour.get(), Colour::kBlack);
  EXPECT_EQ(control.tool_tip.get(), "");
  EXPECT_EQ(control.tab_index.get(), 5);
  EXPECT_EQ(control.box.get(), (Box{1, 2, 3, 4}));
}

TEST(ControlState, EverythingThatCanBeSeenGivesNotice) {
  ChangeNotice notice;
  Control control(notice, {1, 2, 3, 4}, 5);
  control.tool_tip = "tip";
  EXPECT_EQ(notice.revision(), 1u);
  control.enabled = false;
  EXPECT_EQ(notice.revision(), 2u);
  control.visible = false;
  EXPECT_EQ(notice.revision(), 3u);
  control.colour = Colour::kRed;
  EXPECT_EQ(notice.revision(), 4u);
  control.tab_index = 6;
  EXPECT_EQ(notice.revision(), 5u);
  control.box = Box{1, 2, 3, 5};
  EXPECT_EQ(notice.revision(), 6u);
}

TEST(ControlState, EveryKindGivesNoticeOfItsOwnValues) {
  ChangeNotice notice;
  std::uint64_t expected = 0;
  const auto noticed = [&] { return notice.revision() == ++expected; };
  Label label(notice, {}, "before");
  label.caption = "after";
  EXPECT_TRUE(noticed());
  Button button(notice, {}, 0, "before");
  expected = notice.revision();
  button.caption = "after";
  EXPECT_TRUE(noticed());
  TextBox text_box(notice, {}, 0);
  text_box.text = "text";
  EXPECT_TRUE(noticed());
  Picture picture(notice, {}, 0);
  picture.mouse_pointer = MousePointer::kCustom;
  EXPECT_TRUE(noticed());
  ListBox list(notice, {}, 0);
  list.entries = {{".a", true}};
  EXPECT_TRUE(noticed());
  list.entries = {{".a", false}};
  EXPECT_TRUE(noticed()) << "a mark is something to see";
  list.current = 0;
  EXPECT_TRUE(noticed());
  FolderTree tree(notice, {}, 0);
  expected = notice.revision();
  tree.selected_folder = "/f";
  EXPECT_TRUE(noticed());
}

TEST(ControlState, ColoursHaveTheSystemsNumbers) {
  EXPECT_EQ(static_cast<std::uint32_t>(Colour::kBlack), 0u);
  EXPECT_EQ(static_cast<std::uint32_t>(Colour::kRed), 255u);
  EXPECT_EQ(static_cast<std::uint32_t>(Colour::kSystemHighlight), 0x8000000Du);
}

TEST(ControlState, AButtonHasItsFontAndToolTip) {
  ChangeNotice notice;
  const Button button(notice, {}, 3, "OK", "hint");
  EXPECT_EQ(button.font, "MS Sans Serif");
  EXPECT_EQ(button.caption.get(), "OK");
  EXPECT_EQ(button.tool_tip.get(), "hint");
}

TEST(CheckBox, TakesOffOnAndGreyed) {
  ChangeNotice notice;
  CheckBox box(notice, {}, 0, "logging");
  EXPECT_EQ(box.value(), 0);
  for (const int value : {1, 2, 0}) {
    EXPECT_TRUE(box.SetValue(value));
    EXPECT_EQ(box.value(), value);
  }
  EXPECT_EQ(notice.revision(), 3u);
}

TEST(CheckBox, RefusesEveryOtherValue) {
  ChangeNotice notice;
  CheckBox box(notice, {}, 0, "logging");
  box.SetValue(1);
  const std::uint64_t revision = notice.revision();
  for (const int value :
       {-1, 3, 256, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
    EXPECT_FALSE(box.SetValue(value)) << value;
    EXPECT_EQ(box.value(), 1) << value;
  }
  EXPECT_EQ(notice.revision(), revision);
}

TEST(ControlState, AListHasNoCurrentEntryAtFirst) {
  ChangeNotice notice;
  const ListBox list(notice, {}, 0);
  EXPECT_EQ(list.current.get(), -1);
  EXPECT_TRUE(list.entries.get().empty());
}

TEST(ControlState, AFolderTreeIsHiddenAtFirst) {
  ChangeNotice notice;
  const FolderTree tree(notice, {}, 0);
  EXPECT_FALSE(tree.visible.get());
}

constexpr std::int64_t kLowest = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t kHighest = std::numeric_limits<std::int64_t>::max();

TEST(ScrollBar, AValueOutsideMovesToTheNearerEnd) {
  ChangeNotice notice;
  ScrollBar bar(notice, {}, 0);
  bar.SetRange(1, 10);
  EXPECT_EQ(bar.value(), 1) << "the range takes the value along";
  for (const std::int64_t value : {std::int64_t{11}, kHighest}) {
    bar.SetValue(value);
    EXPECT_EQ(bar.value(), 10);
  }
  for (const std::int64_t value : {std::int64_t{0}, std::int64_t{-5}, kLowest}) {
    bar.SetValue(value);
    EXPECT_EQ(bar.value(), 1);
  }
  bar.SetValue(7);
  EXPECT_EQ(bar.value(), 7);
}

TEST(ScrollBar, ANarrowerRangeMovesTheValue) {
  ChangeNotice notice;
  ScrollBar bar(notice, {}, 0);
  bar.SetRange(1, 10);
  bar.SetValue(9);
  bar.SetRange(1, 4);
  EXPECT_EQ(bar.value(), 4);
  bar.SetRange(6, 8);
  EXPECT_EQ(bar.value(), 6);
  EXPECT_EQ(bar.minimum(), 6);
  EXPECT_EQ(bar.maximum(), 8);
}

TEST(ScrollBar, AMaximumBelowTheMinimumIsTheMinimum) {
  ChangeNotice notice;
  ScrollBar bar(notice, {}, 0);
  bar.SetRange(5, 2);
  EXPECT_EQ(bar.minimum(), 5);
  EXPECT_EQ(bar.maximum(), 5);
  EXPECT_EQ(bar.value(), 5);
}

TEST(ScrollBar, GivesNoticeOfItsValueAndRange) {
  ChangeNotice notice;
  ScrollBar bar(notice, {}, 0);
  bar.SetRange(0, 10);
  EXPECT_EQ(notice.revision(), 1u);
  bar.SetValue(3);
  EXPECT_EQ(notice.revision(), 2u);
  bar.SetValue(3);
  EXPECT_EQ(notice.revision(), 2u);
}

TEST(ProgressBar, RunsFromZeroToItsMaximum) {
  ChangeNotice notice;
  ProgressBar bar(notice, {});
  EXPECT_EQ(bar.maximum(), 0);
  bar.SetValue(5);
  EXPECT_EQ(bar.value(), 0);
  bar.SetMaximum(100);
  bar.SetValue(50);
  EXPECT_EQ(bar.value(), 50);
  bar.SetValue(kHighest);
  EXPECT_EQ(bar.value(), 100);
  bar.SetValue(kLowest);
  EXPECT_EQ(bar.value(), 0);
}

TEST(ProgressBar, ALowerMaximumTakesTheValueAlong) {
  ChangeNotice notice;
  ProgressBar bar(notice, {});
  bar.SetMaximum(100);
  bar.SetValue(80);
  bar.SetMaximum(30);
  EXPECT_EQ(bar.value(), 30);
  bar.SetMaximum(-1);
  EXPECT_EQ(bar.maximum(), 0);
  EXPECT_EQ(bar.value(), 0);
}

TEST(WindowState, IsNeitherLoadedNorVisibleAtFirst) {
  const Form window("title", 600, 400);
  EXPECT_FALSE(window.loaded.get());
  EXPECT_FALSE(window.visible.get());
  EXPECT_EQ(window.width.get(), 600);
  EXPECT_EQ(window.height.get(), 400);
  EXPECT_EQ(window.caption.get(), "title");
  EXPECT_EQ(window.mouse_pointer.get(), MousePointer::kDefault);
  EXPECT_EQ(window.focus.get(), nullptr);
}

TEST(WindowState, GivesNoticeOfWhatCanBeSeen) {
  Form window("title", 600, 400);
  window.caption = "other";
  EXPECT_EQ(window.changes.revision(), 1u);
  window.loaded = true;
  EXPECT_EQ(window.changes.revision(), 2u);
  window.visible = true;
  EXPECT_EQ(window.changes.revision(), 3u);
  window.width = 601;
  EXPECT_EQ(window.changes.revision(), 4u);
  window.height = 401;
  EXPECT_EQ(window.changes.revision(), 5u);
  window.mouse_pointer = MousePointer::kHourglass;
  EXPECT_EQ(window.changes.revision(), 6u);
}

TEST(WindowState, EveryWishForTheFocusCountsEvenForTheSameControl) {
  Form window("title", 600, 400);
  const Control control(window.changes, {}, 0);
  EXPECT_EQ(window.focus.requests(), 0u);
  window.focus = &control;
  window.focus = &control;
  EXPECT_EQ(window.focus.get(), &control);
  EXPECT_EQ(window.focus.requests(), 2u);
  EXPECT_EQ(window.changes.revision(), 2u);
}

}  // namespace
}  // namespace morvex::test
