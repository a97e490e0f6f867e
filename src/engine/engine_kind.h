// By which road an entry's samples go.
#pragma once

namespace carvello {

enum class EEngine {
  Library,   // the downconverter library at the input's rate
  Spectrum,  // the spectrum that all entries of a job share, and the library for the rest
};

// What the user asks for.
enum class EEngineSetting {
  Auto,
  Library,
  Spectrum,
};

constexpr const char* EngineSettingName(EEngineSetting setting) {
  if (setting == EEngineSetting::Auto) return "auto";
  return setting == EEngineSetting::Spectrum ? "spectrum" : "library";
}

constexpr const char* EngineName(EEngine engine) {
  return engine == EEngine::Spectrum ? "spectrum" : "library";
}

}  // namespace carvello
