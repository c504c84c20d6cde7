// Brings a widget in line with a control's state, and touches it only where it differs.
#pragma once

#include <QColor>
#include <QFont>
#include <QPalette>
#include <QString>
#include <string>

#include "core/forms/control.h"
#include "ui/qt/code_page.h"

class QWidget;

namespace morvex {

// Whether it is shown, and enabled.
void ShowPresence(QWidget& widget, const Control& control);

// The control's colour for text on `palette`'s ground: black stands for the ground's own text
// colour, and the others are shades that can be read there.
QColor TextColour(Colour colour, const QPalette& palette);

// `colour`, moved towards `ink` until it stands out from `ground` by that contrast: 1 is none, 21
// that of black on white. `ink` where nothing nearer does.
QColor Readable(const QColor& colour, const QColor& ink, const QColor& ground, double contrast);

// The outline of boxes with text, on the ground that they have in that palette.
QColor Outline(const QPalette& palette);

// Gives the widget's text the control's colour, and no other colour of its own; `role` is the one
// that it draws text with.
void ShowTextColour(QWidget& widget, const Control& control, QPalette::ColorRole role);

// A caption's lines, parted by CR LF, as the toolkit parts them.
QString ShownLines(const CodePage& page, const std::string& caption);

// A text that a button or menu shows as it stands, "&" included.
QString WithoutMnemonics(const QString& text);

// `text` so that Alt and its first `key` reach the button or label, which shows it as it stands.
// Without such a letter there is no mnemonic.
QString WithMnemonic(const QString& text, QChar key);

// The font of that name where the system has it, otherwise `fallback`.
QFont NamedFont(const std::string& name, const QFont& fallback);

}  // namespace morvex
