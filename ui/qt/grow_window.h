#pragma once

class QWidget;

namespace morvex {

// Sets a window's height in pixels, and moves the window up by as much as it would reach below its
// screen.
void GrowTo(QWidget& window, int height);

}  // namespace morvex
