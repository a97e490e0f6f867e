#include "cli/command_picture.h"

#include "cli/console.h"
#include "cli/help_texts.h"
#include "cli/output_checks.h"
#include "cli/picture_drawing.h"
#include "cli/png_file.h"
#include "cli/progress_display.h"
#include "cli/recording_opening.h"
#include "cli/span_progress.h"
#include "cli/stop_requests.h"
#include "dsp/primitives.h"
#include "engine/recording_stream.h"
#include "support/platform.h"
#include "support/text.h"
#include "support/whole_file.h"

namespace carvello {
namespace {

constexpr const char* kExamples =
    "Examples:\n"
    "  carvello-cli picture \"rec 000.wav\" rec.png\n"
    "  carvello-cli picture rec.wav part.png --from 7M --to 7.3M --start +60 --duration 10 --peak\n"
    "  carvello-cli picture rec.wav grey.png --plain --palette grey --levels -120:-20 --size 1024x512\n\n";

constexpr const char* kMeaning =
    "The picture shows every sample of its span, unless --fast: each row the time from its top on, each column the\n"
    "strongest of its frequencies, low ones left. Without --plain, axes, a scale and a title stand around the W x H\n"
    "pixels.\n\n";

}  // namespace

void CPictureCommand::AddOptions(CCommandOptions& options) {
  SPictureOptions& o = m_options;
  options.Add("INPUT", &o.strInput, "Any file of the recording").Required();
  options.Add("OUT", &o.strOutput, "The PNG file to make").Required();
  options.Add("--from", &o.strFrom, "Lowest frequency in Hz; suffixes k, M and G").Value("HZ");
  options.Add("--to", &o.strTo, "Highest frequency").Value("HZ");
  o.time.AddTo(options);
  options.Add("--size", &o.strSize, "Pixels of the waterfall").Value("WxH").ShowsDefault();
  options.Add("--levels", &o.strLevels, "dBFS of the weakest and the strongest colour; by the noise otherwise")
      .Value("LOW:HIGH");
  options.Add("--palette", &o.strPalette, "viridis, turbo or grey").Value("NAME").ShowsDefault();
  options.Add("--plain", &o.bPlain, "The waterfall alone");
  options.Add("--peak", &o.bPeak, "The largest level of a row's time: nothing short is lost");
  options.Add("--mean", &o.bMean, "The mean level of a row's time (default): weak carriers stand out");
  options.Add("--fast", &o.bFast, "Look at some of the samples only");
  options.Add("--overwrite", &o.bOverwrite, "Replace OUT if it exists");
  options.Add("--quiet", &o.bQuiet, "No progress");
  m_given.AddTo(options);
  options.SetFooter(std::string(kMeaning) + kTimeSpanHelp + kExamples + kExitCodesHelp);
}

EExit CPictureCommand::Run() {
  EndOnStopRequests();
  SPictureLook look;
  std::string error;
  if (!ReadPictureLook(m_options, look, error)) {
    PrintMessage(error);
    return EExit::Usage;
  }
  SRecordingInput input;
  const EExit opened = OpenRecording(m_options.strInput, m_given, input);
  if (opened != EExit::Ok) return opened;
  const CRecordingSet& recording = input.recording;
  SPictureRequest request;
  if (!MakePictureRequest(m_options, look, recording, request, error)) {
    PrintMessageLines(error);
    return EExit::Usage;
  }
  const std::string& strOutput = m_options.strOutput;
  if (const SRefusal refusal = CheckNewFile(strOutput, strOutput, recording, m_options.bOverwrite);
      refusal.exit != EExit::Ok) {
    PrintMessage(refusal.strText);
    return refusal.exit;
  }
  if (!CanWriteWholeFile(strOutput, error)) {
    PrintMessage(error);
    return EExit::OutputFailed;
  }

  InitPrimitives();
  CatchStopRequests();
  CRecordingStream stream(recording);
  CSpanProgress progress(m_options.bQuiet, request.span.nFrames * stream.InputFrames().BytesPerFrame());
  SLevelPicture picture;
  const bool bMade =
      MakeRecordingPicture(stream, request, platform::ProcessorCount(), progress.GoesOn(), picture, error);
  progress.End(bMade);
  if (!bMade && error.empty()) return EExit::Stopped;
  if (!bMade) {
    PrintMessage(error);
    return EExit::InputUnreadable;
  }
  const SLevelRange levels = look.levels.value_or(LevelsOf(picture));
  const std::vector<std::uint8_t> png =
      m_options.bPlain
          ? PlainPng(picture, levels, look.palette, error)
          : PngOfImage(DrawPicture(picture, levels, look.palette, AxesOf(request, picture, recording)), error);
  if (png.empty()) {
    PrintMessage(strOutput + ": " + error);
    return EExit::OutputFailed;
  }
  if (!WriteWholeFile(strOutput, png.data(), png.size(), m_options.bOverwrite, error)) {
    PrintMessage(error);
    return EExit::OutputFailed;
  }
  return EExit::Ok;
}

}  // namespace carvello
