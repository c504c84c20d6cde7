// Functions that show a control's state in a widget: visible or hidden, enabled or disabled,
// colours, captions and fonts.
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

// Makes the widget visible or hidden, and enabled or disabled, as the control is. Changes only what
// differs.
void ShowPresence(QWidget& widget, const Control& control);

// Returns a control's colour for text on the palette's background: the palette's own text colour
// for black, and a readable shade for every other colour.
QColor TextColour(Colour colour, const QPalette& palette);

// Returns `colour`, mixed with just enough of `ink` to reach the contrast ratio `contrast` to
// `ground`. A ratio of 1 is no contrast, 21 is black on white. Returns `ink` when no mixture
// reaches `contrast`.
QColor Readable(const QColor& colour, const QColor& ink, const QColor& ground, double contrast);

// Returns the colour for the outline of text boxes in that palette.
QColor Outline(const QPalette& palette);

// Shows the widget's text in the control's colour; for black, in the palette's own text colour.
// Removes every other colour that was set for this widget. `role` is the palette role in which the
// widget draws text.
void ShowTextColour(QWidget& widget, const Control& control, QPalette::ColorRole role);

// Returns a caption with LF, the toolkit's line break, in place of each CR LF.
QString ShownLines(const CodePage& page, const std::string& caption);

// Returns the text escaped so that a button or menu shows every "&" literally.
QString WithoutMnemonics(const QString& text);

// Returns the text escaped as by WithoutMnemonics. The first occurrence of the letter `key`, in
// upper or lower case, becomes the mnemonic (Alt and that letter). A text without that letter gets
// no mnemonic.
QString WithMnemonic(const QString& text, QChar key);

// Returns the font of that name if the system has it, else `fallback`.
QFont NamedFont(const std::string& name, const QFont& fallback);

}  // namespace morvex
