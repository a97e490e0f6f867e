// Cuts channels out of a 16-bit recording with liquid-dsp: an nco and an msresamp of 100 dB for each, in a thread of
// its own that reads the recording for itself.
//
//   liquid_peer RECORDING OFFSET FRAMES RATE SHIFT:WIDTH:OUTPUT...
//
// OFFSET and FRAMES tell where the samples stand in RECORDING (bytes, I/Q pairs), SHIFT is a channel's centre minus
// that of the recording and WIDTH its sample rate, both in Hz. OUTPUT becomes raw 16-bit I/Q.
#include <algorithm>
#include <array>
#include <cmath>
#include <complex>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <memory>
#include <numbers>
#include <string>
#include <thread>
#include <vector>

#include <liquid/liquid.h>

namespace {

using Sample = std::complex<float>;

constexpr std::size_t kBlock = 1 << 14;  // frames
constexpr float kAttenuation = 100.0f;   // dB

struct SRecording {
  std::string strPath;
  std::streamoff nOffset;
  std::size_t nFrames;
  double fRate;
};

struct SChannel {
  double fShift;
  double fWidth;
  std::string strOutput;
};

std::int16_t ToInt16(float value) {
  return static_cast<std::int16_t>(std::lrint(std::clamp(value, -32768.0f, 32767.0f)));
}

// What a constant of 1 becomes. Version 1.5 halves it once more for every halving of the rate beyond the sixth.
float Gain(msresamp_crcf resampler) {
  constexpr std::size_t kSettled = 200;  // output samples
  const double fRatio = msresamp_crcf_get_rate(resampler);
  std::vector<Sample> constant(static_cast<std::size_t>(kSettled / fRatio), Sample(1.0f));
  std::vector<Sample> result(2 * kSettled);
  unsigned int nGiven = 0;
  msresamp_crcf_execute(resampler, constant.data(), static_cast<unsigned int>(constant.size()), result.data(), &nGiven);
  msresamp_crcf_reset(resampler);
  return result[nGiven - 1].real();
}

void Cut(const SRecording& recording, const SChannel& channel) {
  std::ifstream input(recording.strPath, std::ios::binary);
  std::ofstream output(channel.strOutput, std::ios::binary);
  input.seekg(recording.nOffset);

  const double fRatio = channel.fWidth / recording.fRate;
  const std::unique_ptr<nco_crcf_s, decltype(&nco_crcf_destroy)> oscillator(nco_crcf_create(LIQUID_NCO),
                                                                            nco_crcf_destroy);
  nco_crcf_set_frequency(oscillator.get(),
                         static_cast<float>(2.0 * std::numbers::pi * channel.fShift / recording.fRate));
  const std::unique_ptr<msresamp_crcf_s, decltype(&msresamp_crcf_destroy)> resampler(
      msresamp_crcf_create(static_cast<float>(fRatio), kAttenuation), msresamp_crcf_destroy);
  const float fScale = 1.0f / Gain(resampler.get());

  std::vector<std::array<std::int16_t, 2>> frames(kBlock);
  std::vector<Sample> samples(kBlock);
  std::vector<Sample> shifted(kBlock);
  std::vector<Sample> decimated(2 * kBlock + 2);
  std::vector<std::array<std::int16_t, 2>> cut(decimated.size());
  for (std::size_t nDone = 0; nDone < recording.nFrames;) {
    const std::size_t nFrames = std::min(kBlock, recording.nFrames - nDone);
    input.read(reinterpret_cast<char*>(frames.data()), static_cast<std::streamsize>(nFrames * sizeof frames[0]));
    for (std::size_t i = 0; i < nFrames; ++i) samples[i] = Sample(frames[i][0], frames[i][1]);
    const auto nCount = static_cast<unsigned int>(nFrames);
    unsigned int nGiven = 0;
    nco_crcf_mix_block_down(oscillator.get(), samples.data(), shifted.data(), nCount);
    msresamp_crcf_execute(resampler.get(), shifted.data(), nCount, decimated.data(), &nGiven);
    for (std::size_t i = 0; i < nGiven; ++i) {
      cut[i] = {ToInt16(fScale * decimated[i].real()), ToInt16(fScale * decimated[i].imag())};
    }
    output.write(reinterpret_cast<const char*>(cut.data()), static_cast<std::streamsize>(nGiven * sizeof cut[0]));
    nDone += nFrames;
  }
  output.close();
  if (!input || !output) {
    std::cerr << channel.strOutput << ": could not be cut out of " << recording.strPath << "\n";
    std::exit(1);
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 6) {
    std::cerr << "liquid_peer RECORDING OFFSET FRAMES RATE SHIFT:WIDTH:OUTPUT...\n";
    return 2;
  }
  const SRecording recording{argv[1], std::stoll(argv[2]), std::stoull(argv[3]), std::stod(argv[4])};
  std::vector<std::jthread> threads;
  for (int i = 5; i < argc; ++i) {
    const std::string strChannel = argv[i];
    const std::size_t nFirst = strChannel.find(':');
    const std::size_t nSecond = strChannel.find(':', nFirst + 1);
    const SChannel channel{std::stod(strChannel), std::stod(strChannel.substr(nFirst + 1)),
                           strChannel.substr(nSecond + 1)};
    threads.emplace_back([&recording, channel] { Cut(recording, channel); });
  }
}
