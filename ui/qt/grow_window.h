#pragma once

class QWidget;

namespace morvex {

// Sets a window's height in pixels. If the window then reaches below its screen, moves it up by as
// much, but not beyond the top of the screen.
void GrowTo(QWidget& window, int height);

}  // namespace morvex
