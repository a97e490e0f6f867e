#include <QSettings>

#include "support/my_settings_store.h"
#include "ui/settings_file.h"
#include "ui/user_settings.h"

namespace carvello {

std::unique_ptr<ISettingsBacking> OpenUserSettings() {
  const QString path =
      QSettings(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("Carvello"), QStringLiteral("Carvello"))
          .fileName();
  return std::make_unique<CSettingsFile>(path, kSettingsKey);
}

}  // namespace carvello
