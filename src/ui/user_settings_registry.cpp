#include "support/my_settings_store.h"
#include "support/platform_windows_registry.h"
#include "ui/user_settings.h"

namespace carvello {

std::unique_ptr<ISettingsBacking> OpenUserSettings() {
  return std::make_unique<CRegistrySettings>(kSettingsKey);
}

}  // namespace carvello
