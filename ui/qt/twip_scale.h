// Converts twips, 1440 to the inch, to pixels of a screen.
#pragma once

#include <QRect>
#include <QtGlobal>

#include "core/forms/control.h"

namespace morvex {

struct TwipScale {
  double pixels_per_twip = 96.0 / 1440;

  int Px(int twips) const { return qRound(twips * pixels_per_twip); }
  // Rounds edges, not sizes, so that adjacent boxes stay adjacent.
  QRect Px(const Box& box) const {
    const int left = Px(box.left);
    const int top = Px(box.top);
    return {left, top, Px(box.left + box.width) - left, Px(box.top + box.height) - top};
  }
};

}  // namespace morvex
