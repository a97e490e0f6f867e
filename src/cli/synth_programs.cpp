#include "cli/synth_programs.h"

#include <algorithm>
#include <array>
#include <limits>

#include "recording/riff_bytes.h"
#include "support/system_time.h"
#include "support/text.h"

namespace carvello {
namespace {

using enum ESynthContainer;

constexpr std::int64_t kHighest32 = std::numeric_limits<std::uint32_t>::max();
constexpr std::int64_t kHighest = 1'000'000'000'000;
constexpr const char* kPcm = "ci16 ci24 ci32 cf32";

constexpr std::array kPrograms = {
    SSynthProgram{"halvarn", "halvarn %Y%m%d %H%M%S.wav", false, 1, 1, kHighest, kPcm, Wave, HalvarnChunk, nullptr},
    SSynthProgram{"halvarn-2", "halvarn %Y%m%d %H%M%S.wav", false, 1, 1, kHighest, kPcm, Wave, Halvarn2Chunk, nullptr},
    SSynthProgram{"halvarn-3", "halvarn %Y%m%d %H%M%S.wav", false, 1, 1, kHighest, kPcm, Wave, Halvarn3Chunk, nullptr},
    SSynthProgram{"spectravue-1", "spectravue-%Y%m%d-%H%M%S.wav", false, 1, 1, kHighest32, kPcm, Wave, Auxi28, nullptr},
    SSynthProgram{"spectravue-2", "spectravue-%Y%m%d-%H%M%S.wav", false, 1, 1, kHighest32, kPcm, Wave, Auxi44, nullptr},
    SSynthProgram{"spectravue-2.34", "spectravue-%Y%m%d-%H%M%S.wav", true, 1, 1, kHighest32, kPcm, Wave, Auxi68,
                  nullptr},
    SSynthProgram{"spectravue-3.0", "spectravue-%Y%m%d-%H%M%S.wav", false, 1, 1, kHighest32, kPcm, Wave, Auxi72,
                  nullptr},
    SSynthProgram{"winrad", "winrad-%Y%m%d-%H%M%S.wav", false, 1, 1, kHighest32, kPcm, Wave, Auxi164, nullptr},
    SSynthProgram{"elad", "elad-%Y%m%d-%H%M%S.wav", false, 1, 1, kHighest32, kPcm, Wave, EladChunks, nullptr},
    SSynthProgram{"perseus", "perseus-%Y%m%d-%H%M%S.wav", false, 1, 1, kHighest32, "ci24 ci16", Wave, RcvrChunk,
                  nullptr},
    SSynthProgram{"go2monitor", "go2monitor-%Y%m%d-%H%M%S.wav", false, 1, 1, kHighest, kPcm, Wave, SignalInfoChunk,
                  nullptr},
    SSynthProgram{"winradio", "G39DDC-{M}MHz_%y-%m-%d_%H'%M'%S.ddc", true, 1, 1, kHighest, "ci16 ci24", Wave, nullptr,
                  nullptr},
    SSynthProgram{"sdrsharp", "SDRSharp_%Y%m%d_%H%M%SZ_{F}Hz_IQ.wav", false, 1, 1, kHighest, "ci16 cf32", Wave, nullptr,
                  nullptr},
    SSynthProgram{"airspy", "AirSpy_%Y%m%d_%H%M%SZ_{F}kHz_IQ.wav", true, 1000, 1, kHighest, "ci16 cf32", Wave, nullptr,
                  nullptr},
    SSynthProgram{"hackrf", "HackRF_%Y%m%d_%H%M%SZ_{F}kHz_IQ.wav", true, 1000, 1, kHighest, "cu8", Wave, nullptr,
                  nullptr},
    SSynthProgram{"sdr++", "baseband_{F}Hz_%H-%M-%S_%d-%m-%Y.wav", true, 1, 1, kHighest, "ci16 cu8 ci32 cf32", Wave,
                  nullptr, nullptr},
    SSynthProgram{"sdrangel", "rec.%Y-%m-%dT%H_%M_%S_000.sdriq", false, 1, 1, kHighest, "ci16 ci32", Sdriq, nullptr,
                  nullptr},
    SSynthProgram{"sdrangel-4.2", "rec.%Y-%m-%dT%H_%M_%S_000.sdriq", false, 1, 1, kHighest, "ci16 ci32", OldSdriq,
                  nullptr, nullptr},
    SSynthProgram{"sdrangel-wav", "rec_%Y-%m-%dT%H_%M_%S_000.wav", false, 1, 1, kHighest32, "ci16", Wave, LocalAuxi164,
                  nullptr},
    SSynthProgram{"gqrx", "gqrx_%Y%m%d_%H%M%S_{F}_{R}_fc.raw", false, 1, 1, kHighest, "cf32", None, nullptr, nullptr},
    SSynthProgram{"kiwisdr", "%Y%m%dT%H%M%SZ_{F}_iq.wav", false, 1, 1, kHighest, "ci16", Kiwi, nullptr, nullptr},
    SSynthProgram{"kiwisdr-wav", "%Y%m%dT%H%M%SZ_{F}_iq.wav", false, 1, 1, kHighest, "ci16", Wave, nullptr, nullptr},
    SSynthProgram{"kiwisdr-browser", "kiwi.example_%Y-%m-%dT%H_%M_%SZ_{K}_iq.wav", false, 1, 1, kHighest, "ci16", Wave,
                  nullptr, nullptr},
    SSynthProgram{"satdump", "%Y-%m-%d_%H-%M-%S_{R}SPS_{F}Hz.{E}", false, 1, 1, kHighest, "cf32 ci8 ci16 ci32", None,
                  nullptr, nullptr},
    SSynthProgram{"satdump-wav", "%Y-%m-%d_%H-%M-%S_{R}SPS_{F}Hz.wav", false, 1, 1, kHighest, "ci16", Wave, nullptr,
                  nullptr},
    SSynthProgram{"sdruno", "SDRuno_%Y%m%d_%H%M%SZ_{F}kHz.wav", false, 1000, 1, kHighest, "ci16", Wave, nullptr,
                  nullptr},
    SSynthProgram{"hdsdr", "HDSDR_%Y%m%d_%H%M%SZ_{F}kHz_RF.wav", false, 1000, 1, kHighest, "ci16 ci24 ci32 cf32", Wave,
                  nullptr, nullptr},
    SSynthProgram{"sdrconnect", "SDRconnect_IQ_%Y%m%d_%H%M%S_{F}HZ.wav", true, 1, 1, kHighest, "ci16", Wave, nullptr,
                  nullptr},
    SSynthProgram{"wavviewdx", "iq_pcm16_ch1_cf{F}_sr{R}_dt%Y%m%d-%H%M%Sz.raw", false, 1, 1, kHighest, "ci16", None,
                  nullptr, nullptr},
    SSynthProgram{"portapack", "BBD_0001.{E}", false, 1, 1, kHighest, "ci16 ci8", None, nullptr, ".TXT"},
    SSynthProgram{"rtl_433", "g001_{M}M_{R}k.{E}", false, 1, 1000, kHighest, "cu8 ci16 cf32", None, nullptr, nullptr},
};

// What the types are called in the endings of programs that go by them.
std::string EndingOf(const SSynthProgram& program, const SSampleKind& kind) {
  const std::string bits = std::to_string(kind.nBits);
  if (program.pszBeside != nullptr) return "C" + bits;
  const char* const number = kind.number == ENumber::Float ? "cf" : kind.number == ENumber::Unsigned ? "cu" : "cs";
  return number + bits;
}

// Thousandths and so on as decimals, without zeros at their end.
std::string Decimals(std::int64_t value, std::int64_t unit, int digits) {
  std::string text =
      Format("%lld.%0*lld", static_cast<long long>(value / unit), digits, static_cast<long long>(value % unit));
  text.erase(text.find_last_not_of('0') + 1);
  if (text.ends_with('.')) text.pop_back();
  return text;
}

std::uint32_t Crc32(std::string_view bytes) {
  std::uint32_t crc = 0xFFFF'FFFFU;
  for (const char byte : bytes) {
    crc ^= static_cast<std::uint8_t>(byte);
    for (int bit = 0; bit < 8; ++bit) crc = (crc >> 1U) ^ ((crc & 1U) != 0 ? 0xEDB8'8320U : 0U);
  }
  return ~crc;
}

// Versions before 4.2.1 have neither milliseconds nor a check sum.
std::string SdriqHead(const SSynthFacts& facts, bool isOld) {
  std::string head;
  AppendLittleEndian(head, facts.nSampleRate);
  AppendLittleEndian(head, static_cast<std::uint64_t>(facts.nCentre));
  AppendLittleEndian(head, static_cast<std::uint64_t>(isOld ? facts.tStart : facts.tStart * 1000));
  AppendLittleEndian(head, facts.kind.nBits == 32 ? 24U : 16U);
  if (isOld) return head;
  AppendLittleEndian(head, 0U);
  const std::uint32_t sum = Crc32(head);
  AppendLittleEndian(head, sum);
  return head;
}

std::string Head(const SSynthProgram& program, const SSynthFacts& facts) {
  switch (program.container) {
    case Wave:
      return WaveHead(facts, program.pfnChunks == nullptr ? std::string() : program.pfnChunks(facts));
    case Kiwi:
      return KiwiHead(facts);
    case Sdriq:
    case OldSdriq:
      return SdriqHead(facts, program.container == OldSdriq);
    case None:
      break;
  }
  return {};
}

}  // namespace

const SSynthProgram* FindSynthProgram(std::string_view name) {
  for (const SSynthProgram& program : kPrograms) {
    if (EqualsNoCaseAscii(name, program.pszName)) return &program;
  }
  return nullptr;
}

const SSynthProgram* SynthProgramOfEnding(const std::string& path) {
  return ToLowerAscii(path).ends_with(".sdriq") ? FindSynthProgram("sdrangel") : nullptr;
}

std::string SynthProgramNames(std::size_t line) {
  std::string names;
  std::size_t begin = 0;  // of the last line
  for (const SSynthProgram& program : kPrograms) {
    if (!names.empty()) names += ", ";
    if (names.size() - begin > line) {
      names.back() = '\n';
      begin = names.size();
    }
    names += program.pszName;
  }
  return names;
}

SSampleKind SynthKindOf(const SSynthProgram& program, const std::string& type) {
  std::string_view types = program.pszTypes;
  while (!types.empty()) {
    const std::string_view each = types.substr(0, types.find(' '));
    types.remove_prefix(std::min(each.size() + 1, types.size()));
    if (!type.empty() && ParseSampleKind(type) != ParseSampleKind(each)) continue;
    SSampleKind kind = ParseSampleKind(each).value_or(SSampleKind());
    if (program.container == Wave && kind.number == ENumber::Unsigned) kind.dZero = 128.0;
    // 24 bits in places of 32.
    const bool isSdriq = program.container == Sdriq || program.container == OldSdriq;
    if (isSdriq && kind.nBits == 32) kind.dFullScale = 0x1p23;
    return kind;
  }
  return {};
}

std::string SynthFileName(const SSynthProgram& program, const SSynthFacts& facts) {
  std::string name = program.pszFile;
  const auto put = [&name](const char* field, const std::string& text) {
    if (const std::size_t at = name.find(field); at != std::string::npos) name.replace(at, 3, text);
  };
  put("{F}", std::to_string(facts.nCentre / program.nUnit));
  put("{M}", Decimals(facts.nCentre, 1'000'000, 6));
  put("{K}", Decimals(facts.nCentre, 1000, 3));
  put("{R}", std::to_string(facts.nSampleRate / program.nRateUnit));
  put("{E}", EndingOf(program, facts.kind));
  return program.bLocal ? FormatLocal(name.c_str(), facts.tStart) : FormatUtc(name.c_str(), facts.tStart);
}

SSynthFile LayOutProgramFile(const SSynthProgram& program, const SSynthFacts& facts, const std::string& path) {
  SSynthFile file;
  file.strPath = path;
  file.kind = facts.kind;
  file.nFrames = facts.nFrames;
  file.head = [&program, facts](std::int64_t frames) {
    SSynthFacts written = facts;
    written.nFrames = frames;
    return Head(program, written);
  };
  if (program.container == Kiwi) {
    file.nBlockFrames = kKiwiFrames;
    file.blockHead = [facts](std::int64_t first, std::int64_t frames) { return KiwiBlockHead(facts, first, frames); };
  }
  if (program.pszBeside != nullptr) {
    file.describing.push_back(
        {path.substr(0, path.rfind('.')) + program.pszBeside,
         Format("sample_rate=%u\ncenter_frequency=%lld\n", facts.nSampleRate, static_cast<long long>(facts.nCentre))});
  }
  return file;
}

}  // namespace carvello
