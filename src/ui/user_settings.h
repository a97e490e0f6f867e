// Where the settings of the user at work lie: a file on Linux, the registry on Windows.
#pragma once

#include <memory>

#include "support/settings_backing.h"

namespace carvello {

// The key kSettingsKey, made when it is missing.
std::unique_ptr<ISettingsBacking> OpenUserSettings();

}  // namespace carvello
