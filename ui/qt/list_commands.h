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
  // What a click does in the core.
  using Handler = void (*)(Program&);

  // The buttons become children of `window`, which also filters their events. All must outlive the
  // object, the window's destructor excepted.
  ListCommands(ReplacementsForm& grid, const CodePage& page, QWidget& window);

  // Brings captions, tool tips and the like in line with the grid.
  void Show();
  // Puts the buttons in their places; the confirming one keeps to the right edge of a window that
  // is `wider` pixels wider than its twips.
  void Place(const TwipScale& scale, int wider);
  // The least scale that leaves no caption cut.
  TwipScale LeastScale() const;
  std::vector<QWidget*> InTabOrder() const;

 signals:
  // `opens_afresh`: the handler may leave the editor as if it had just been opened.
  void Clicked(Handler handler, bool opens_afresh);

 private:
  struct Command {
    const Button* state = nullptr;
    QPushButton* widget = nullptr;
    char mnemonic = 0;  // a letter of the caption; 0: none
  };

  void Add(const char* name, const Button& button, char mnemonic, Handler handler,
           bool opens_afresh = false);

  const ReplacementsForm& grid_;
  const CodePage& page_;
  QWidget& window_;
  std::vector<Command> commands_;  // in tab order
};

}  // namespace morvex
