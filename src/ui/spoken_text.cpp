#include "ui/spoken_text.h"

#include <QCoreApplication>
#include <QLabel>
#include <QVariant>

namespace carvello {

namespace {
constexpr char kWhat[] = "carvello_what";  // what the label is, as the form says
}

void ShowSpoken(QLabel& label, const QString& text) {
  if (!label.property(kWhat).isValid()) label.setProperty(kWhat, label.accessibleName());
  label.setText(text);
  const QString what = label.property(kWhat).toString(), value = text.trimmed();
  label.setAccessibleName(value.isEmpty() ? what
                                          : QCoreApplication::translate("SpokenText", "%1: %2").arg(what, value));
}

}  // namespace carvello
