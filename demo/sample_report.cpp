// sample-report STATION… < RESULT
// Prints, for every output in the result of "carvello-cli cut --json", the strongest signal in the file beside the
// strongest of the stations (FREQUENCY:DBFS…, as given to "carvello-cli synth") that lies in its band. Fails when a
// file cannot be read or the two differ.
#include <cmath>
#include <cstdio>
#include <exception>
#include <iostream>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "strongest_signal.h"
#include "wave_samples.h"

namespace {

using carvello::demo::FindStrongestSignal;
using carvello::demo::ReadWaveSamples;
using carvello::demo::Signal;

constexpr std::size_t kMaxFrames = 1 << 20;
constexpr double kFrequencyTolerance = 0.1;  // Hz
constexpr double kLevelTolerance = 0.1;      // dB

Signal ParseStation(const std::string& text) {
  const std::size_t colon = text.find(':');
  if (colon == std::string::npos) throw std::invalid_argument("not FREQUENCY:DBFS: " + text);
  return {std::stod(text), std::stod(text.substr(colon + 1))};
}

// The strongest station within the band; a level of -infinity when there is none.
Signal StrongestStation(const std::vector<Signal>& stations, double centre, double bandwidth) {
  Signal strongest{0, -INFINITY};
  for (const Signal& station : stations) {
    if (std::abs(station.dFrequency - centre) < bandwidth / 2 && station.dLevel > strongest.dLevel) strongest = station;
  }
  return strongest;
}

// One line of the table. False when what is found is not what was put in.
bool Report(const nlohmann::json& output, const std::vector<Signal>& stations) {
  const auto file = output.at("files").at(0).get<std::string>();
  const auto centre = output.at("frequency").get<double>();
  const auto bandwidth = output.at("bandwidth").get<double>();
  const auto wave = ReadWaveSamples(file, kMaxFrames);
  if (!wave || wave->samples.size() < 2) {
    std::fprintf(stderr, "%s: not a readable IQ recording\n", file.c_str());
    return false;
  }
  Signal found = FindStrongestSignal(wave->samples, wave->nSampleRate);
  found.dFrequency += centre;
  const Signal expected = StrongestStation(stations, centre, bandwidth);
  const bool same = std::abs(found.dFrequency - expected.dFrequency) < kFrequencyTolerance &&
                    std::abs(found.dLevel - expected.dLevel) < kLevelTolerance;
  std::printf("%-51s %8.0f %7.0f %6.2f  %10.2f %6.2f  %8.0f %6.2f  %s\n",
              file.substr(file.find_last_of("/\\") + 1).c_str(), centre, bandwidth, wave->Seconds(), found.dFrequency,
              found.dLevel, expected.dFrequency, expected.dLevel, same ? "ok" : "DIFFERS");
  return same;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    std::vector<Signal> stations;
    for (int i = 1; i < argc; ++i) stations.push_back(ParseStation(argv[i]));

    const nlohmann::json result = nlohmann::json::parse(std::cin);
    std::printf("%-51s %8s %7s %6s  %17s  %15s\n", "", "Centre", "Width", "Length", "Strongest signal", "Put in");
    std::printf("%-51s %8s %7s %6s  %10s %6s  %8s %6s\n", "File", "Hz", "Hz", "s", "Hz", "dBFS", "Hz", "dBFS");
    bool good = true;
    for (const auto& output : result.at("outputs")) good = Report(output, stations) && good;
    return good ? 0 : 1;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "sample-report: %s\n", error.what());
    return 1;
  }
}
