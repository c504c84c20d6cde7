#include "core/forms/main_form.h"

namespace morvex {
namespace {

constexpr const char* kHeadingFont = "Papyrus";
constexpr const char* kPathHint = "Bestand of map";

}  // namespace

MainForm::MainForm()
    : Form(" Morvex v" MORVEX_VERSION, 8295, 4575),
      lblPassword_1(changes, {240, 240, 1095, 375}, "Source :", kHeadingFont),
      lblPassword_2(changes, {240, 840, 1095, 375}, "Target :", kHeadingFont),
      FolderTreeview1(changes, {1440, 240, 5895, 4335}, 6),
      cmdAnonymize(changes, {1440, 1440, 1215, 375}, 2, "OK", "instellingen opslaan"),
      cmdGo(changes, {2880, 1440, 2295, 375}, 3, kGoIdle),
      cmdExit(changes, {5400, 1440, 1215, 375}, 4, "Exit"),
      imOpties(changes, {7560, 240, 480, 480}, 5),
      imList(changes, {7560, 840, 480, 480}, 7),
      lblExtensions(changes, {240, 2040, 7815, 375}, "", kHeadingFont),
      lblFiles(changes, {240, 2520, 7815, 255}, ""),
      Label1(changes, {240, 3000, 1455, 375}, " S t a t s", kHeadingFont),
      lblTotalFiles(changes, {240, 3480, 2535, 495}, ""),
      lblTijd(changes, {2880, 3480, 2295, 255}, ""),
      lblPercentage(changes, {5400, 3480, 2655, 495}, ""),
      lblNote(changes, {240, 4200, 7815, 255}, ""),
      ProgressBar1(changes, {240, 4200, 7815, 255}),
      Image1(changes, {7560, 3000, 480, 375}, -1),
      // A frame around the paths, one around the statistics, and the lines between them.
      Lines{{{120, 120, 8175, 120},
             {120, 1320, 7440, 1320},
             {120, 120, 120, 1320},
             {7440, 120, 7440, 1320},
             {120, 1920, 8175, 1920},
             {120, 2880, 8175, 2880},
             {120, 4080, 8175, 4080},
             {120, 2880, 120, 4080},
             {8175, 2880, 8175, 4080}}},
      source_box_(changes, {1440, 240, 5895, 375}, 0),
      target_box_(changes, {1440, 840, 5895, 375}, 1) {
  lblPassword_1.tool_tip = kPathHint;
  lblPassword_2.tool_tip = kPathHint;
  lblExtensions.tool_tip = "gescande bestandstypen";
  imOpties.cursor_resource = 101;
  imList.cursor_resource = 101;
}

}  // namespace morvex
