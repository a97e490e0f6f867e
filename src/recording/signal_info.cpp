#include "recording/signal_info.h"

#include "recording/riff_bytes.h"
#include "recording/xml_mgr.h"
#include "support/system_time.h"
#include "support/text.h"

namespace carvello {

namespace {

// As "%.3f" shows a whole number, but with a point in every locale.
std::string WithThreeDecimals(std::int64_t value) {
  return Format("%lld.000", static_cast<long long>(value));
}

}  // namespace

std::string BuildSignalInfoXml(const SSignalFacts& facts) {
  CXMLMgr manager;
  manager.Initialise();
  const pugi::xml_node root = manager.AddElement(manager.Document(), "signalinfo", "",
                                                 {{"xml:lang", "EN"},
                                                  {"xmlns:xsi", "http://www.w3.org/2001/XMLSchema-instance"},
                                                  {"xsi:noNamespaceSchemaLocation", "signalinfo.xsd"}});
  const pugi::xml_node base = manager.AddBase(root);
  manager.AddElement(base, "bandwidth", WithThreeDecimals(facts.nBandwidth));
  manager.AddElement(base, "data_type", "complex");
  manager.AddElement(base, "if_frequency", "0");
  manager.AddElement(base, "rf_frequency", WithThreeDecimals(facts.nCenterFrequency));
  manager.AddElement(base, "sample_rate", WithThreeDecimals(facts.nSampleRate));
  // The hour twice and no minutes: deliberate, this document carries its time in exactly this form.
  manager.AddElement(base, "signaltime", FormatUtc("%Y-%m-%dT%H:%H:%S.000Z", facts.tSignal));
  return manager.Text();
}

std::string BuildMetaChunk(const SSignalFacts& facts) {
  std::string body = BuildSignalInfoXml(facts);
  body.resize((body.size() + 4) / 4 * 4, '\0');
  return RiffChunk("meta", body);
}

}  // namespace carvello
