#include "ui/qt/spoken_roles.h"

#include <QAccessible>
#include <QAccessibleWidget>

#include "ui/qt/bound_window.h"
#include "ui/qt/elided_label.h"

namespace morvex {
namespace {

// The toolkit knows the roles of its own classes only and reports others as containers.
QAccessibleInterface* Spoken(const QString&, QObject* object) {
  if (auto* const window = dynamic_cast<BoundWindow*>(object)) {
    const bool is_modal = window->windowModality() != Qt::NonModal;
    return new QAccessibleWidget(window, is_modal ? QAccessible::Dialog : QAccessible::Window);
  }
  if (auto* const label = qobject_cast<ElidedLabel*>(object)) {
    return new QAccessibleWidget(label, QAccessible::StaticText);
  }
  return nullptr;
}

}  // namespace

void TellSpokenRoles() { QAccessible::installFactory(Spoken); }

}  // namespace morvex
