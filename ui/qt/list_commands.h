// The eight buttons below the replacement grid.
#pragma once

#include <QObject>
#include <QPushButton>
#include <vector>

#include "core/program/program.h"
#include "ui/qt/code_page.h"
#include "ui/qt/twip_scale.h"

namespace morvex {

class ListCommands : public QObject {
  Q_OBJECT

 public:
  // The core's handler of a click.
  using Handler = void (*)(Program&);

  // The buttons become children of `window`, which also filters their events. All three arguments
  // must outlive this object; it may be a member of `window`.
  ListCommands(ReplacementsForm& grid, const CodePage& page, QWidget& window);

  // Shows the state of the form's buttons: caption, tool tip, and whether each is enabled and
  // visible.
  void Show();
  // Positions the buttons. The window is `wider` pixels wider than its twips say; the OK button
  // stays at the window's right edge.
  void Place(const TwipScale& scale, int wider);
  // Returns the smallest scale at which every caption fits its button.
  TwipScale LeastScale() const;
  std::vector<QWidget*> InTabOrder() const;

 signals:
  // `opens_afresh`: whether the handler may bring the editor into its freshly opened state.
  void Clicked(Handler handler, bool opens_afresh);

 private:
  struct Command {
    const Button* state = nullptr;
    QPushButton* widget = nullptr;
    char mnemonic = 0;  // a letter of the caption, or 0 for none
  };

  void Add(const char* name, const Button& button, char mnemonic, Handler handler,
           bool opens_afresh = false);

  const ReplacementsForm& grid_;
  const CodePage& page_;
  QWidget& window_;
  std::vector<Command> commands_;  // in tab order
};

}  // namespace morvex
