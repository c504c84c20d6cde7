// The form of the main window: source and target, the commands, the statistics of a run.
#pragma once

#include <array>
#include <string>

#include "core/forms/control.h"

namespace morvex {

// Indexes of the two path boxes.
inline constexpr int kSourceBox = 0;
inline constexpr int kTargetBox = 2;

// Captions of the Go button.
inline constexpr const char* kGoIdle = ">----------->";
inline constexpr const char* kGoPathsChanged = ">------------>>>>";
inline constexpr const char* kGoArmed = "GO !";

struct MainForm : Form {
  MainForm();

  // `index` is kSourceBox or kTargetBox.
  TextBox& Text1(int index) { return index == kSourceBox ? source_box_ : target_box_; }
  const TextBox& Text1(int index) const { return index == kSourceBox ? source_box_ : target_box_; }

  Label lblPassword_1;  // heads the source box
  Label lblPassword_2;  // heads the target box
  FolderTree FolderTreeview1;
  Button cmdAnonymize;
  Button cmdGo;
  Button cmdExit;
  Picture imOpties;
  Picture imList;
  Label lblExtensions;  // the selected extensions, without separators
  Label lblFiles;       // the file being processed
  Label Label1;         // heads the statistics
  Label lblTotalFiles;  // what the program is doing, then the counts of files
  Label lblTijd;        // elapsed time
  Label lblPercentage;  // hits and result
  Label lblNote;        // warns of files in the target that the last run did not make
  ProgressBar ProgressBar1;
  Timer Timer1;
  Picture Image1;             // decoration, like the lines
  std::array<Line, 9> Lines;  // Line1 to Line9

  int EditedBox = kSourceBox;  // the path box in whose place the folder tree is shown

 private:
  TextBox source_box_;
  TextBox target_box_;
};

}  // namespace morvex
