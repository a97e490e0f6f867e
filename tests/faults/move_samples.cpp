// An output in three parts, whose second and third begin with samples that were written to the part before first, as it
// happens where a job's memory for samples is used up. Prints whether all went well, and the sample bytes that are
// told.
#include <cstdint>
#include <cstdio>
#include <exception>
#include <string>

#include "recording/wave_file_data.h"
#include "support/platform.h"

namespace {

using carvello::ETell;

// What stands in the parts, one after the other. Memory of its own, which is there before anything can fail.
char g_samples[2'400'000];

class CMovedOutput {
 public:
  bool Write(const std::string& path) {
    carvello::SRecordingDescription description;
    description.nSampleRate = 1000;
    description.nSplitMB = 1;
    m_data.Describe(description);
    return m_data.Open(path, 0, "tag") &&
           // The first block, told; a stretch that does not fit behind it after all; the rest of the second block.
           Put(600'000, true, ETell::Now) && Put(400'000, true, ETell::Now) && Put(100'000, false, ETell::Later) &&
           Put(50'000, false, ETell::Later) && m_data.SplitBefore(150'000) && Put(350'000, false, ETell::Later) &&
           Put(500'000, false, ETell::Now) && Put(100'000, false, ETell::Later) && m_data.SplitBefore(100'000) &&
           Put(300'000, false, ETell::Now);
  }
  bool Close() {
    m_data.Close();
    return m_data.LastError().empty();
  }
  std::int64_t Told() const { return m_data.TotalDataBytes(); }

 private:
  bool Put(std::uint32_t bytes, bool maySplit, ETell tell) {
    const char* const place = g_samples + m_nPut;
    m_nPut += bytes;
    return m_data.Write(place, bytes / 2, 16, maySplit, tell);
  }

  carvello::CWaveFileData m_data;
  std::uint32_t m_nPut = 0;
};

}  // namespace

int main(int, char** argv) {
  for (std::size_t i = 0; i < sizeof g_samples; ++i) g_samples[i] = static_cast<char>('a' + i / 7 % 23);
  try {
    carvello::platform::PrepareProcess();
    CMovedOutput output;
    const bool written = output.Write(std::string(argv[1]) + "/Out.wav");
    const bool closed = output.Close();
    std::printf("%s %lld\n", written && closed ? "ok" : "failed", static_cast<long long>(output.Told()));
    return 0;
  } catch (const std::exception& exception) {
    std::printf("%s\n", exception.what());
    return 1;
  }
}
