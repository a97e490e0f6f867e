#include "cli/command_scan.h"

#include <optional>

#include "cli/console.h"
#include "cli/help_texts.h"
#include "cli/output_checks.h"
#include "cli/recording_opening.h"
#include "cli/scan_report.h"
#include "cli/span_progress.h"
#include "cli/stop_requests.h"
#include "dsp/primitives.h"
#include "engine/recording_stream.h"
#include "jobs/quantities.h"
#include "support/platform.h"
#include "support/text.h"
#include "support/whole_file.h"

namespace carvello {
namespace {

constexpr double kLeastAbove = 1.0;
constexpr double kMostAbove = 200.0;

constexpr const char* kMeaning =
    "Every sample of the span is looked at. A signal stands out of the noise of its part of the band all the time, "
    "for\n"
    "some of it, or for a burst of milliseconds. Noise alone brings a signal in less than one of 1,000 recordings; so\n"
    "bursts must stand out by some 15 dB whatever --above says.\n\n";

constexpr const char* kExamples =
    "Examples:\n"
    "  carvello-cli scan \"rec 000.wav\"\n"
    "  carvello-cli scan rec.wav --raster 5k --above 15 --start +60 --duration 600 --json\n"
    "  carvello-cli scan rec.wav --jobs found.json && carvello-cli cut --jobs found.json --output cuts\n\n";

bool ReadWidth(const char* option, const std::string& text, double& width, std::string& error) {
  if (text.empty()) return true;
  const std::optional<std::int64_t> parsed = ParseFrequency(text);
  if (!parsed || *parsed <= 0) {
    error = Format("%s \"%s\" cannot be read. Accepted: above 0, %s", option, Printable(text).c_str(), kFrequencyForms);
    return false;
  }
  width = static_cast<double>(*parsed);
  return true;
}

}  // namespace

void CScanCommand::AddOptions(CCommandOptions& options) {
  options.Add("INPUT", &m_strInput, "Any file of the recording").Required();
  m_time.AddTo(options);
  options.Add("--above", &m_strAbove, "dB above the noise that a signal has at least").Value("DB").ShowsDefault();
  options.Add("--min-width", &m_strMinWidth, "Leave out what is narrower").Value("HZ");
  options.Add("--raster", &m_strRaster, "Frequencies are multiples of this").Value("HZ");
  options.Add("--centre", &m_bCentre, "List a bare carrier at the very centre too, where receivers leave one");
  options.Add("--json", &m_bJson, "Print one JSON object instead of a table");
  options.Add("--jobs", &m_strJobFile, "Write a job file with an entry for each signal, for cut --jobs").Value("FILE");
  options.Add("--overwrite", &m_bOverwrite, "Replace the job file if it exists");
  options.Add("--quiet", &m_bQuiet, "No progress");
  m_given.AddTo(options, true);
  options.SetFooter(std::string(kMeaning) + kTimeSpanHelp + kExamples + kExitCodesHelp);
}

bool CScanCommand::ReadOptions(SScanRequest& request, std::string& error) const {
  const std::optional<double> above = ParseDecibels(m_strAbove);
  if (!above || *above < kLeastAbove || *above > kMostAbove) {
    error = Format("--above \"%s\" cannot be read. Accepted: decibels from %.0f to %.0f, for example 10",
                   Printable(m_strAbove).c_str(), kLeastAbove, kMostAbove);
    return false;
  }
  request.dAbove = *above;
  request.bCentre = m_bCentre;
  return ReadWidth("--min-width", m_strMinWidth, request.dMinWidth, error) &&
         ReadWidth("--raster", m_strRaster, request.dRaster, error);
}

EExit CScanCommand::CheckJobFile(const CRecordingSet& recording) const {
  if (m_strJobFile.empty()) return EExit::Ok;
  if (const SRefusal refusal = CheckNewFile(m_strJobFile, m_strJobFile, recording, m_bOverwrite);
      refusal.exit != EExit::Ok) {
    PrintMessage(refusal.strText);
    return refusal.exit;
  }
  std::string error;
  if (CanWriteWholeFile(m_strJobFile, error)) return EExit::Ok;
  PrintMessage(error);
  return EExit::OutputFailed;
}

EExit CScanCommand::Run() {
  EndOnStopRequests();
  SScanRequest request;
  std::string error;
  if (!ReadOptions(request, error)) {
    PrintMessage(error);
    return EExit::Usage;
  }
  SRecordingInput input;
  const EExit opened = OpenRecording(m_strInput, m_given, input);
  if (opened != EExit::Ok) return opened;
  const CRecordingSet& recording = input.recording;
  SFrameSpan span;
  if (!ResolveTimeSpan(m_time, recording, span, error)) {
    PrintMessageLines(error);
    return EExit::Usage;
  }
  const EExit jobFile = CheckJobFile(recording);
  if (jobFile != EExit::Ok) return jobFile;

  InitPrimitives();
  CatchStopRequests();
  request.nFirstFrame = span.nFirst;
  request.nFrames = span.nCount;
  CRecordingStream stream(recording);
  CSpanProgress progress(m_bQuiet, span.nCount * stream.InputFrames().BytesPerFrame());
  SSignalScan result;
  const bool bScanned = ScanRecording(recording, stream, request, progress.GoesOn(), result, error);
  progress.End(bScanned);
  if (!bScanned && error.empty()) return EExit::Stopped;
  if (!bScanned) {
    PrintMessage(error);
    return EExit::InputUnreadable;
  }
  if (result.bCentreLeftOut) {
    PrintMessage("left out: a bare carrier at the centre, where receivers leave one. Accepted: --centre to list it");
  }
  PrintOut(m_bJson ? ScanReportJson(result) : ScanReportText(result));
  if (m_strJobFile.empty()) return EExit::Ok;
  SGivenFacts given;
  ReadGivenFacts(m_given, given, error);  // as when the recording was opened
  const std::string strJobs = ScanJobFile(result, m_strInput, given, recording, span);
  if (WriteWholeFile(m_strJobFile, strJobs.data(), strJobs.size(), m_bOverwrite, error)) return EExit::Ok;
  PrintMessage(error);
  return EExit::OutputFailed;
}

}  // namespace carvello
