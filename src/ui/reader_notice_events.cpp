// AT-SPI: the toolkit makes signals of the events. Not every reader listens to every kind.
#include <QAccessible>
#include <QWidget>

#include "ui/reader_notice.h"

namespace carvello {

void NotifyReaders(QWidget* pNotice, const QString& /*text*/) {
  for (const QAccessible::Event kind : {QAccessible::NameChanged, QAccessible::ObjectShow, QAccessible::Alert}) {
    QAccessibleEvent event(pNotice, kind);
    QAccessible::updateAccessibility(&event);
  }
}

}  // namespace carvello
