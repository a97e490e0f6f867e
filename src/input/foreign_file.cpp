#include "input/foreign_file.h"

#include <cstdlib>

#include "input/container_kiwi.h"
#include "input/container_raw.h"
#include "input/container_sdriq.h"
#include "input/format_chunk.h"
#include "support/file.h"
#include "support/platform.h"
#include "support/text.h"

namespace carvello {

namespace {

constexpr double kWave8Zero = 128.0;

void TakeName(const SNameFacts& name, SForeignFile& found) {
  found.strSource = name.pszProgram;
  found.nCentre = name.nCentre;
  found.zonedStart = name.time;
  found.zone = name.zone;
  if (name.bGuess) {
    found.warnings.push_back(
        Format("%s names files so as far as is known, it does not say so itself: check centre "
               "frequency and time",
               name.pszProgram));
  }
}

SForeignFile Unreadable(std::uint32_t error) {
  SForeignFile found;
  found.nError = error;
  return found;
}

// A WAV that no chunk describes, by its name, its many data chunks, or both.
std::optional<SForeignFile> ReadForeignWave(const std::string& path, const SScanResult& scan) {
  const WAVEFORMATEX& format = scan.format.Format;
  const std::optional<SNameFacts> name = ReadRecordingName(platform::NameOf(path));
  SForeignFile found;
  CFile file;
  if (scan.bKiwi && !file.Open(path, platform::EOpenMode::ReadShared)) return Unreadable(platform::LastError());
  const bool isKiwi = scan.bKiwi && ReadKiwi(file, FrameBytes(format), found);
  if (file.FirstError() != 0) return Unreadable(file.FirstError());
  const bool hasNoRate = format.nSamplesPerSec == 0;
  if (!name && !isKiwi && !hasNoRate) return std::nullopt;
  if (!name && !isKiwi) found.strSource = "WAV";
  if (name) TakeName(*name, found);
  // SDRangel looks for it among what the user has put in front of the time.
  if (name && !found.nCentre) found.nCentre = ReadNameNumbers(platform::NameOf(path)).nCentre;
  found.kind = KindOfWave(scan.format);
  // Values of 8 bits are unsigned in a WAV. Who wrote them is known here, other than of files without such a name.
  if (format.wBitsPerSample == 8 && found.kind->IsKnown()) {
    found.kind = MakeSampleKind(ENumber::Unsigned, 8);
    found.kind->dZero = kWave8Zero;
  }
  if (!hasNoRate) found.nSampleRate = format.nSamplesPerSec;
  return found;
}

// Samples behind a format that nobody filled in: what they are, and how fast they come, the user must tell.
SForeignFile ReadBlankWave(const std::string& path, const SScanResult& scan) {
  SForeignFile found;
  found.strSource = "WAV";
  found.strContainer = "WAV without a format";
  if (const std::optional<SNameFacts> name = ReadRecordingName(platform::NameOf(path))) TakeName(*name, found);
  found.nDataOffset = scan.nDataStart;
  found.nDataBytes = scan.nSampleBytes;
  return found;
}

}  // namespace

std::optional<SForeignFile> ReadForeignFile(const std::string& path, const SScanResult& scan, bool isRaw) {
  const bool isWave = scan.nSampleBytes > 0 && FrameBytes(scan.format.Format) > 0;
  if (isWave) return ReadForeignWave(path, scan);
  if (scan.bBlankFormat && scan.nSampleBytes > 0) return ReadBlankWave(path, scan);
  const bool isSdriq = ToLowerAscii(path).ends_with(".sdriq");
  if (!isRaw && !isSdriq && !ReadRawEnding(platform::NameOf(path)).bRaw) return std::nullopt;
  SForeignFile found;
  CFile file;
  if (!file.Open(path, platform::EOpenMode::ReadShared)) return Unreadable(platform::LastError());
  const bool read = isSdriq && !isRaw ? ReadSdriq(file, found) : ReadRaw(file, path, isRaw, found);
  if (file.FirstError() != 0) return Unreadable(file.FirstError());
  return read ? std::optional(found) : std::nullopt;
}

std::string NameContradiction(const std::string& path, const RecordingSourceInfo& source) {
  const std::optional<SNameFacts> name = ReadRecordingName(platform::NameOf(path));
  if (!name || !name->time) return {};
  if (name->zone == ENameTime::FalseZ) {
    return "programs that name files so write local time with a \"Z\" behind it; taken as UTC";
  }
  std::int64_t start = 0;
  if (name->zone != ENameTime::Utc || !SystemTimeToSeconds(source.start, start)) return {};
  const SDateFields& date = name->time->fields;
  const std::int64_t told = UtcCalendarTime(date, "time in the file's name");
  if (std::abs(told - start) <= 1) return {};
  return Format("its name tells the start %04d-%02d-%02d %02d:%02d:%02d UTC, its chunk %s; the chunk's is taken",
                date.nYear, date.nMonth, date.nDay, date.nHour, date.nMinute, date.nSecond,
                DateText(source.start).c_str());
}

}  // namespace carvello
