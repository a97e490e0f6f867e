#include "ui/resources.h"

#include <QDir>
#include <QFile>

// Out of every namespace, as Qt demands. Without it the linker would leave the resources of a static library out.
static void InitResources() {
  Q_INIT_RESOURCE(carvello);
  Q_INIT_RESOURCE(translations);
}

namespace carvello {

void UseResources() {
  InitResources();
}

std::optional<std::string> LoadResource(const char* type, int number) {
  UseResources();
  QFile file(QStringLiteral(":/%1/%2").arg(QLatin1String(type)).arg(number));
  if (!file.open(QIODevice::ReadOnly)) return std::nullopt;
  return file.readAll().toStdString();
}

QIcon ProgramIcon() {
  UseResources();
  QIcon icon;
  const QDir sizes(QStringLiteral(":/icons"));
  for (const QString& size : sizes.entryList()) icon.addFile(sizes.filePath(size));
  return icon;
}

}  // namespace carvello
