#include "ui/qt/list_commands.h"

#include <QShortcutEvent>
#include <algorithm>

#include "core/list/list_file.h"
#include "core/list/list_operations.h"
#include "ui/qt/show_control.h"
#include "ui/qt/tool_tip.h"

namespace morvex {
namespace {

constexpr int kRoomBesideCaption = 12;  // pixels, for a button's frame

// A button that acts on its mnemonic at once. A button of the toolkit is first shown pressed for a
// tenth of a second and has the focus meanwhile (see Add), so keys typed in that time would be
// lost.
class CommandButton : public QPushButton {
 public:
  using QPushButton::QPushButton;

 protected:
  bool event(QEvent* event) override {
    const bool is_mnemonic = event->type() == QEvent::Shortcut &&
                             !static_cast<const QShortcutEvent*>(event)->isAmbiguous();
    if (!is_mnemonic) return QPushButton::event(event);
    click();
    return true;
  }
};

// Whether a screen reader can speak the caption, unlike a sign such as "<-|->".
bool IsWord(const QString& caption) {
  return caption.size() > 1 && std::any_of(caption.begin(), caption.end(),
                                           [](QChar character) { return character.isLetter(); });
}

}  // namespace

ListCommands::ListCommands(ReplacementsForm& grid, const CodePage& page, QWidget& window)
    : grid_(grid), page_(page), window_(window) {
  Add("cmdJoker", grid.cmdJoker, 0, cmdJoker_Click);
  Add("cmdCRLF", grid.cmdCRLF, 'C', cmdCRLF_Click);
  Add("cmdMirror", grid.cmdMirror, 0, cmdMirror_Click);
  Add("cmdReset", grid.cmdReset, 'R', cmdReset_Click, true);
  Add("cmdDeleteEmpty", grid.cmdDeleteEmpty, 'X', cmdDeleteEmpty_Click, true);
  Add("cmdImport", grid.cmdImport, 'I', cmdImport_Click, true);
  Add("cmdSaveList", grid.cmdSaveList, 'S', cmdSaveList_Click);
  Add("cmdOK", grid.cmdOK, 'O', cmdOK_Click);
  std::stable_sort(commands_.begin(), commands_.end(), [](const Command& a, const Command& b) {
    return a.state->tab_index.get() < b.state->tab_index.get();
  });
}

void ListCommands::Add(const char* name, const Button& button, char mnemonic, Handler handler,
                       bool opens_afresh) {
  auto* const widget = new CommandButton(&window_);
  widget->setObjectName(name);
  widget->setFocusPolicy(Qt::StrongFocus);
  widget->setAutoDefault(true);  // Enter presses the focused button
  widget->installEventFilter(&window_);
  // However the button is pressed, it takes the focus from the cell that was being edited.
  connect(widget, &QPushButton::pressed, widget, [widget] { widget->setFocus(); });
  connect(widget, &QPushButton::clicked, this,
          [this, handler, opens_afresh] { emit Clicked(handler, opens_afresh); });
  commands_.push_back({&button, widget, mnemonic});
}

void ListCommands::Show() {
  for (const Command& command : commands_) {
    const QString caption = page_.Shown(command.state->caption.get());
    const QString hint = page_.Shown(command.state->tool_tip.get());
    const QString text = command.mnemonic == 0 ? WithoutMnemonics(caption)
                                               : WithMnemonic(caption, QChar(command.mnemonic));
    // Only on a change: setting a text registers its mnemonic again.
    if (command.widget->text() != text) command.widget->setText(text);
    command.widget->setToolTip(PlainToolTip(hint));
    command.widget->setAccessibleName(IsWord(caption) ? caption : hint);
    command.widget->setAccessibleDescription(hint);
    ShowPresence(*command.widget, *command.state);
  }
}

void ListCommands::Place(const TwipScale& scale, int wider) {
  for (const Command& command : commands_) {
    const bool is_confirming = command.state == &grid_.cmdOK;
    const QRect place = scale.Px(command.state->box.get());
    command.widget->setGeometry(place.translated(is_confirming ? wider : 0, 0));
  }
}

TwipScale ListCommands::LeastScale() const {
  TwipScale scale{0};
  for (const Command& command : commands_) {
    const QString caption = page_.Shown(command.state->caption.get());
    const int least = command.widget->fontMetrics().horizontalAdvance(caption) + kRoomBesideCaption;
    const double needed = static_cast<double>(least) / command.state->box.get().width;
    scale.pixels_per_twip = std::max(scale.pixels_per_twip, needed);
  }
  return scale;
}

std::vector<QWidget*> ListCommands::InTabOrder() const {
  std::vector<QWidget*> widgets;
  for (const Command& command : commands_) widgets.push_back(command.widget);
  return widgets;
}

}  // namespace morvex
