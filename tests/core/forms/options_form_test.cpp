// The initial state of the options window's form.
#include "core/forms/options_form.h"

#include <gtest/gtest.h>

#include <set>

namespace morvex::test {
namespace {

TEST(OptionsWindowState, HasItsCaptions) {
  const OptionsForm window;
  EXPECT_EQ(window.caption.get(), "Opties");
  EXPECT_EQ(window.lblJoker.caption.get(), "wildcard");
  EXPECT_EQ(window.lblJokerWhere.caption.get(), "in replacement list");
  EXPECT_EQ(window.lblSeparator.caption.get(), "separator");
  EXPECT_EQ(window.lblSeparatorWhere.caption.get(), "in replacement list");
  EXPECT_EQ(window.lblExtensies.caption.get(), "extensions :");
}

TEST(OptionsWindowState, ItsBoxesAndItsListAreEmpty) {
  const OptionsForm window;
  EXPECT_EQ(window.txtJoker.text.get(), "");
  EXPECT_EQ(window.txtSeparator.text.get(), "");
  EXPECT_EQ(window.txtExtensie.text.get(), "");
  EXPECT_TRUE(window.lstExtensie.entries.get().empty());
  EXPECT_EQ(window.chkLoggen.value(), 0);
}

TEST(OptionsWindowState, TheTabKeyReachesEveryControlOnce) {
  const OptionsForm window;
  const std::set<int> indexes = {
      window.txtJoker.tab_index,          window.txtSeparator.tab_index,
      window.txtExtensie.tab_index,       window.cmdListExtensie_Down.tab_index,
      window.lstExtensie.tab_index,       window.chkLoggen.tab_index,
      window.imOptionsToFolder.tab_index, window.cmdToepassen.tab_index};
  EXPECT_EQ(indexes, (std::set<int>{0, 1, 2, 3, 4, 5, 6, 7}));
}

}  // namespace
}  // namespace morvex::test
