#include "input/foreign_recordings.h"

namespace carvello::test {

std::string SystemTimeBytes(const SDate& date) {
  return Le16(date.nYear) + Le16(date.nMonth) + Le16(0) + Le16(date.nDay) + Le16(date.nHour) + Le16(date.nMinute) +
         Le16(date.nSecond) + Le16(date.nMilliseconds);
}

std::string ShortAuxiBody(const SAuxi& auxi) {
  return SystemTimeBytes(auxi.start) + Le32(auxi.nCentreFrequency) + Le32(auxi.nADFrequency) + Le32(0);
}

std::string AuxiBody(std::size_t size, const SAuxi& auxi) {
  std::string body = SystemTimeBytes(auxi.start) + SystemTimeBytes(auxi.stop) + Le32(auxi.nCentreFrequency) +
                     Le32(auxi.nADFrequency) + Le32(auxi.nIFFrequency) + Le32(auxi.nBandwidth) + Le32(auxi.nIQOffset) +
                     Le32(auxi.nSpare);
  body.resize(size, '\0');
  return body;
}

std::string RcvrBody(std::uint32_t centreFrequency, std::uint32_t rateIndex, std::int64_t start) {
  return Le32(centreFrequency) + Le32(rateIndex) + Le64(static_cast<std::uint64_t>(start)) + std::string(18, '\0');
}

std::string SignalInfoBody(std::string_view dataType, std::string_view signalTime) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<signalinfo base=\"\">\n  <bandwidth>900.9</bandwidth>\n"
         "  <data_type>" +
         std::string(dataType) +
         "</data_type>\n  <if_frequency>455000</if_frequency>\n  <rf_frequency>7050000.7</rf_frequency>\n"
         "  <sample_rate>1000.000</sample_rate>\n  <signaltime>" +
         std::string(signalTime) + "</signaltime>\n</signalinfo>\n";
}

std::string SecondsOfWave(double seconds, std::string_view chunks) {
  return PlainWave(static_cast<std::size_t>(seconds * 1000) * 4, chunks);
}

}  // namespace carvello::test
