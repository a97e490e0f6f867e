#include "engine/engine_fixture.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstring>
#include <fstream>
#include <numeric>
#include <random>
#include <semaphore>
#include <thread>

namespace carvello::test {

namespace {

constexpr std::int64_t kNumberBase = 30'011;  // below 32768, and prime to every block length
constexpr std::int64_t kHeaderBytes = 44;

std::mutex passThroughLock;
std::vector<SPassThrough::SInstance> instances;
std::uint32_t reportedRateOut = 0;
std::atomic<int> delayMilliseconds = 0;
std::atomic<std::uint32_t> delayedHandle = 0;
std::atomic<std::uint32_t> heldHandle = 0;
std::counting_semaphore<> letGo(0);
std::atomic<bool> initHeld = false;
std::counting_semaphore<> letInitGo(0);
std::size_t heldBack = 0;
std::size_t lost = 0;
std::int64_t decimation = 1;

template <typename TNumber>
void Put(std::string& bytes, TNumber number) {
  for (std::size_t i = 0; i < sizeof(number); ++i) {
    bytes.push_back(static_cast<char>((static_cast<std::uint64_t>(number) >> (8 * i)) & 0xFF));
  }
}

}  // namespace

void CKeepingTarget::PostTexts(std::uint32_t /*message*/, std::string worker, std::string text) {
  const std::lock_guard guard(m_lock);
  m_lines.push_back(worker + "> " + text);
}

void CKeepingTarget::PostNumbers(std::uint32_t /*message*/, std::uint64_t total, std::uint64_t done) {
  EXPECT_EQ(total, 10'000u);
  const std::lock_guard guard(m_lock);
  m_progress.push_back(done);
}

std::vector<std::string> CKeepingTarget::Lines() const {
  const std::lock_guard guard(m_lock);
  return m_lines;
}

std::size_t CKeepingTarget::Count(const std::string& line) const {
  const auto lines = Lines();
  return static_cast<std::size_t>(std::count(lines.begin(), lines.end(), line));
}

std::vector<std::uint64_t> CKeepingTarget::Progress() const {
  const std::lock_guard guard(m_lock);
  return m_progress;
}

void SPassThrough::Bind(DspBinding& binding) {
  {
    const std::lock_guard guard(passThroughLock);
    instances.clear();
    reportedRateOut = 0;
    heldBack = 0;
    lost = 0;
    decimation = 1;
  }
  delayMilliseconds = 0;
  heldHandle = 0;
  initHeld = false;
  binding.bLoaded = 1;
  binding.AllocInstance = [](const wchar_t* name) -> std::uint32_t {
    EXPECT_STREQ(name, L"Carvello");
    const std::lock_guard guard(passThroughLock);
    instances.emplace_back();
    return static_cast<std::uint32_t>(instances.size());
  };
  binding.ReleaseInstance = [](std::uint32_t handle) {
    const std::lock_guard guard(passThroughLock);
    instances[handle - 1].bReleased = true;
  };
  binding.DownconvertInit = [](std::uint32_t handle, std::uint32_t inputRate, std::uint32_t outputRate) {
    if (initHeld) letInitGo.acquire();
    const std::lock_guard guard(passThroughLock);
    instances[handle - 1].nInputRate = inputRate;
    instances[handle - 1].nOutputRate = outputRate;
  };
  binding.DisableFractionalResampler = [](std::uint32_t handle) {
    const std::lock_guard guard(passThroughLock);
    instances[handle - 1].bFractionalDisabled = true;
  };
  binding.DownconvertRateOut = [](std::uint32_t handle) -> std::uint32_t {
    const std::lock_guard guard(passThroughLock);
    return reportedRateOut != 0 ? reportedRateOut : instances[handle - 1].nOutputRate;
  };
  binding.Diagnostics = [](std::uint32_t /*handle*/, char* text, std::uint32_t capacity) -> std::uint32_t {
    const std::lock_guard guard(passThroughLock);
    const std::string line =
        "\nan output sample needs input up to " + std::to_string(heldBack) + ".000 output samples later\n";
    if (capacity > line.size()) std::copy_n(line.c_str(), line.size() + 1, text);
    return static_cast<std::uint32_t>(line.size());
  };
  binding.NCO = [](std::uint32_t handle, std::int64_t shift, std::uint32_t /*inputRate*/, const SComplex* source,
                   std::uint32_t count, SComplex* destination) {
    {
      const std::lock_guard guard(passThroughLock);
      instances[handle - 1].shifts.push_back(shift);
    }
    EXPECT_NE(source, destination) << "the block belongs to all writers";
    if (shift != 0) {
      std::fill_n(destination, count, SComplex{});
    } else {
      std::copy_n(source, count, destination);
    }
  };
  binding.DownconvertRun = [](std::uint32_t handle, const SComplex* input, std::uint32_t inputCount, SComplex* output,
                              std::uint32_t* outputCount) {
    EXPECT_EQ(*outputCount, 0u);
    // A block comes in several runs; it is the first one that takes its time.
    const bool first = Instances()[handle - 1].nSamples % kBlockFrames == 0;
    if (first && handle == delayedHandle) std::this_thread::sleep_for(std::chrono::milliseconds(delayMilliseconds));
    if (first && handle == heldHandle) letGo.acquire();
    const std::lock_guard guard(passThroughLock);
    SInstance& instance = instances[handle - 1];
    for (std::uint32_t i = 0; i < inputCount; ++i, ++instance.nSamples) {
      if (instance.nSamples % decimation == 0) instance.pending.push_back(input[i]);
    }
    const std::size_t dropped = std::min(lost, instance.pending.size());
    instance.pending.erase(instance.pending.begin(), instance.pending.begin() + static_cast<std::ptrdiff_t>(dropped));
    lost -= dropped;
    const std::size_t ready = instance.pending.size() - std::min(instance.pending.size(), heldBack);
    std::copy_n(instance.pending.begin(), ready, output);
    instance.pending.erase(instance.pending.begin(), instance.pending.begin() + static_cast<std::ptrdiff_t>(ready));
    *outputCount = static_cast<std::uint32_t>(ready);
  };
}

std::vector<SPassThrough::SInstance> SPassThrough::Instances() {
  const std::lock_guard guard(passThroughLock);
  return instances;
}

void SPassThrough::ReportRateOut(std::uint32_t rate) {
  const std::lock_guard guard(passThroughLock);
  reportedRateOut = rate;
}

void SPassThrough::Hold(std::uint32_t handle) {
  heldHandle = handle;
}

void SPassThrough::LetGo() {
  letGo.release();
}

void SPassThrough::LetAllGo() {
  heldHandle = 0;
  letGo.release();  // for a run that waits at this moment
}

void SPassThrough::HoldInit() {
  initHeld = true;
}

void SPassThrough::LetInitGo(int count) {
  letInitGo.release(count);
}

void SPassThrough::ForgetInits() {
  while (letInitGo.try_acquire()) continue;
}

void SPassThrough::HoldBack(std::size_t samples) {
  const std::lock_guard guard(passThroughLock);
  heldBack = samples;
}

void SPassThrough::Lose(std::size_t samples) {
  const std::lock_guard guard(passThroughLock);
  lost = samples;
}

void SPassThrough::DecimateBy(std::int64_t factor) {
  const std::lock_guard guard(passThroughLock);
  decimation = factor;
}

void SPassThrough::DelayRun(int milliseconds, std::uint32_t handle) {
  delayedHandle = handle;
  delayMilliseconds = milliseconds;
}

WAVEFORMATEXTENSIBLE NumberedFormat() {
  WAVEFORMATEXTENSIBLE format;
  format.Format.wFormatTag = kFormatTagExtensible;
  format.Format.nChannels = 2;
  format.Format.nSamplesPerSec = 1'000'000;
  format.Format.wBitsPerSample = 16;
  format.SubFormat = KSDATAFORMAT_SUBTYPE_PCM;
  return format;
}

std::vector<std::int64_t> Frames(std::int64_t first, std::int64_t count) {
  std::vector<std::int64_t> frames(static_cast<std::size_t>(count));
  std::iota(frames.begin(), frames.end(), first);
  return frames;
}

std::int16_t NumberedI(std::int64_t frame) {
  return static_cast<std::int16_t>(frame % kNumberBase);
}
std::int16_t NumberedQ(std::int64_t frame) {
  return static_cast<std::int16_t>(frame / kNumberBase);
}

EngineTest::EngineTest() : m_reader(m_dsp) {
  std::random_device random;
  m_folder = std::filesystem::temp_directory_path() / ("carvello-engine-" + std::to_string(random()));
  std::filesystem::create_directory(m_folder);
  SPassThrough::Bind(m_dsp);
  m_reader.SetTarget(&m_target, RegisterMessage(kLogMessageName));
  m_reader.SetProgressTarget(&m_target, RegisterMessage(kProgressMessageName));
  m_reader.SetName("Reader");
}

EngineTest::~EngineTest() {
  m_reader.Stop();
  std::error_code ignored;
  std::filesystem::remove_all(m_folder, ignored);
}

std::string EngineTest::Path(const std::string& name) const {
  const auto path = (m_folder / std::filesystem::path(std::u8string(name.begin(), name.end()))).u8string();
  return {path.begin(), path.end()};
}

std::string EngineTest::WriteNumbered(const std::string& name, std::int64_t first, std::int64_t frames) const {
  const auto dataBytes = static_cast<std::uint32_t>(4 * frames);
  std::string bytes = "RIFF";
  Put<std::uint32_t>(bytes, 36 + dataBytes);
  bytes += "WAVEfmt ";
  Put<std::uint32_t>(bytes, 16);
  Put<std::uint16_t>(bytes, 1);
  Put<std::uint16_t>(bytes, 2);
  Put<std::uint32_t>(bytes, 1'000'000);
  Put<std::uint32_t>(bytes, 4'000'000);
  Put<std::uint16_t>(bytes, 4);
  Put<std::uint16_t>(bytes, 16);
  bytes += "data";
  Put<std::uint32_t>(bytes, dataBytes);
  const std::size_t header = bytes.size();
  bytes.resize(header + dataBytes);
  for (std::int64_t i = 0; i < frames; ++i) {
    const std::int16_t pair[2] = {NumberedI(first + i), NumberedQ(first + i)};
    std::memcpy(&bytes[header + static_cast<std::size_t>(4 * i)], pair, sizeof(pair));
  }
  const std::string path = Path(name);
  std::ofstream(m_folder / std::filesystem::path(std::u8string(name.begin(), name.end())), std::ios::binary) << bytes;
  return path;
}

OutputEntry EngineTest::MakeEntry(const std::string& name, std::int64_t startSample, std::int64_t totalSamples) const {
  OutputEntry entry;
  entry.strFileName = Path(name);
  entry.strDisplayName = name;
  entry.nStartSample = startSample;
  entry.nTotalSamples = totalSamples;
  entry.nInputFrequency = entry.nOutputFrequency = 7'000'000;
  entry.nInputSampleRate = entry.nOutputSampleRate = 1'000'000;
  entry.tStart = 1'604'275'140;
  return entry;
}

std::vector<std::int64_t> EngineTest::ReadNumbered(const std::string& path) const {
  const std::vector<std::uint8_t> data = ChunkBody(ReadBytes(path), "data");
  std::vector<std::int64_t> numbers(data.size() / 4);
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    std::int16_t pair[2];
    std::memcpy(pair, &data[4 * i], sizeof(pair));
    numbers[i] = pair[1] * kNumberBase + pair[0];
  }
  return numbers;
}

std::vector<SRecordingFile> EngineTest::Describe(const std::vector<std::string>& files) {
  std::vector<SRecordingFile> described;
  for (const std::string& path : files) {
    SRecordingFile& file = described.emplace_back();
    file.strPath = path;
    file.nSampleBytes = 4;
    if (const auto status = platform::GetFileStatus(path)) {
      file.stamp = SFileStamp(*status);
      file.nSampleBytes = status->nSize - kHeaderBytes;
    }
    file.nDataBytes = file.nSampleBytes;
  }
  return described;
}

CRecordingSet EngineTest::DescribeSet(const std::vector<std::string>& files) {
  CRecordingSet set;
  set.files = Describe(files);
  set.format = NumberedFormat();
  set.kind = KindOfWave(set.format);
  for (const SRecordingFile& file : set.files) set.nTotalRemainder += file.nDataBytes;
  set.nSampleRate = 1'000'000;
  set.nBitsPerSample = 16;
  set.nRadioCenterFreq = 7'000'000;
  set.tEnd = set.nTotalRemainder / 4 / set.nSampleRate;
  return set;
}

void EngineTest::StartJob(const std::vector<SRecordingFile>& files, const std::vector<OutputEntry>& entries,
                          std::int64_t totalBytes) {
  std::vector<const OutputEntry*> pointers;
  for (const OutputEntry& entry : entries) pointers.push_back(&entry);
  m_reader.SetInput(files, KindOfWave(NumberedFormat()), NumberedFormat());
  m_reader.SetOutputs(pointers);
  if (!m_engines.empty()) m_reader.SetEngines(m_engines);
  m_reader.Start();
  m_reader.Post(request::kCreateWriters, static_cast<std::int32_t>(entries.size()));
  for (std::size_t i = 0; i < entries.size(); ++i) {
    auto request = m_reader.TakeRequest(request::kGiveEntry);
    request->nParam1 = static_cast<std::int32_t>(i);
    request->pEntry = &entries[i];
    m_reader.Post(std::move(request));
  }
  auto request = m_reader.TakeRequest(request::kStartJob);
  request->strParam = files.front().strPath;
  request->llParam1 = m_reader.FirstFrame();
  request->llParam2 = totalBytes;
  m_reader.Post(std::move(request));
  m_reader.WaitIdle();
}

void EngineTest::FinishJob() {
  while (m_reader.IsRunning()) std::this_thread::sleep_for(std::chrono::milliseconds(1));
  m_reader.WaitIdle();
  m_reader.Stop();
}

void EngineTest::RunJob(const std::vector<std::string>& files, const std::vector<OutputEntry>& entries,
                        std::int64_t totalBytes) {
  StartJob(Describe(files), entries, totalBytes);
  FinishJob();
}

std::vector<std::uint8_t> ReadBytes(const std::string& path) {
  std::ifstream file(std::filesystem::path(std::u8string(path.begin(), path.end())), std::ios::binary | std::ios::ate);
  if (!file) return {};
  std::vector<std::uint8_t> bytes(static_cast<std::size_t>(file.tellg()));
  file.seekg(0).read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  return file ? bytes : std::vector<std::uint8_t>();
}

std::vector<std::uint8_t> ChunkBody(const std::vector<std::uint8_t>& file, const std::string& name) {
  const auto number32 = [&](std::size_t at) {
    std::uint32_t number = 0;
    std::memcpy(&number, &file[at], sizeof(number));
    return number;
  };
  std::uint64_t dataSize = 0;
  for (std::size_t at = 12; at + 8 <= file.size();) {
    const std::string chunk(file.begin() + static_cast<std::ptrdiff_t>(at),
                            file.begin() + static_cast<std::ptrdiff_t>(at) + 4);
    std::uint64_t size = number32(at + 4);
    if (chunk == "ds64") std::memcpy(&dataSize, &file[at + 16], sizeof(dataSize));
    if (chunk == "data" && size == 0xFFFFFFFF) size = dataSize;
    at += 8;
    if (chunk == name) {
      return {file.begin() + static_cast<std::ptrdiff_t>(at), file.begin() + static_cast<std::ptrdiff_t>(at + size)};
    }
    at += size;
  }
  ADD_FAILURE() << "no chunk " << name;
  return {};
}

}  // namespace carvello::test
