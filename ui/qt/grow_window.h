#pragma once

class QWidget;

namespace morvex {

// Gives a window that height, in pixels, and moves it up as far as it would reach below its screen.
void GrowTo(QWidget& window, int height);

}  // namespace morvex
