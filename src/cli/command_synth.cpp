#include "cli/command_synth.h"

#include "cli/console.h"
#include "cli/help_texts.h"
#include "cli/stop_requests.h"
#include "cli/synth_layout.h"
#include "cli/synth_programs.h"
#include "cli/synth_recording.h"
#include "support/formatting.h"
#include "support/platform.h"
#include "support/text.h"

namespace carvello {

void CSynthCommand::AddOptions(CCommandOptions& options) {
  SSynthOptions& o = m_options;
  options
      .Add("OUT", &o.strPath,
           "The file to make; with --files, \"OUT 000.wav\" and so on. SigMF if it ends in .sigmf-data (with\n"
           ".sigmf-meta), .sigmf or .sigmf-collection; a folder with --program")

      .Required();
  options.Add("--rate", &o.strRate, "Sample rate in Hz; suffixes k and M").Value("HZ").ShowsDefault();
  options.Add("--centre", &o.strCentre, "Centre frequency in Hz; suffixes k, M and G").Value("HZ").ShowsDefault();
  options.Add("--seconds", &o.strSeconds, "Length, for example 20 or 0.5").Value("S").ShowsDefault();
  options.Add("--bits", &o.strBits, "8, 16, 24, 32 (integers) or float").Value("BITS").ShowsDefault();
  options
      .Add("--sample-type", &o.strSampleType,
           "ci8, ci16, cu8, cf32 and so on: a file of samples and nothing else, if neither OUT nor --program tell\n"
           "another kind; behind SDRangel's head if OUT ends in .sdriq")
      .Value("TYPE");
  options
      .Add("--program", &o.strProgram,
           "A file as this program lays it out, under the program's own name in the folder OUT:\n" +
               SynthProgramNames(90))
      .Value("NAME");
  options.Add("--captures", &o.strCaptures, "Captures of a SigMF recording").Value("N").ShowsDefault();
  options.Add("--lost", &o.strLost, "Samples that are lost between two captures").Value("N").ShowsDefault();
  options.Add("--rf64", &o.bRf64, "RF64 instead of WAV");
  options.Add("--files", &o.strFiles, "Number of files").Value("N").ShowsDefault();
  options.Add("--start", &o.strStart, "Time of the first sample, with zone").Value("TIME").ShowsDefault();
  options
      .Add("--station", &o.stations,
           "FREQ:DBFS[:tone|am], a carrier, bare (tone) or with 1 kHz at 70 % (am); repeat for more")
      .Value("STATION");
  options.Add("--noise", &o.strNoise, "RMS of the noise in dBFS").Value("DBFS");
  options.Add("--seed", &o.strSeed, "Seed of the noise").Value("N").ShowsDefault();
  options.Add("--overwrite", &m_bOverwrite, "Replace files that exist");
  options.Add("--quiet", &m_bQuiet, "Do not list the files made");
  options.SetFooter(
      std::string("Without --station and --noise: one am station at -20 dBFS, an eighth of the rate above the\n"
                  "centre, over noise at -60 dBFS. 0 dBFS is a carrier at full scale.\n\n"
                  "Examples:\n"
                  "  carvello-cli synth test.wav\n"
                  "  carvello-cli synth rec.wav --files 2 --seconds 20 --station 7.1M:-20:am \\\n"
                  "      --station 7.25M:-30 --noise -70\n"
                  "  carvello-cli synth . --program gqrx --rate 1.8M --centre 100M\n"
                  "  carvello-cli synth rec.sigmf-data --captures 3 --lost 1000\n\n") +
      kExitCodesHelp);
}

EExit CSynthCommand::Run() {
  SSynthSettings settings;
  std::string error;
  if (!MakeSynthSettings(m_options, settings, error)) {
    PrintMessage(error);
    return EExit::Usage;
  }
  for (const std::string& file : SynthPaths(settings)) {
    if (m_bOverwrite) continue;
    const std::optional<bool> there = platform::IsThere(file);
    if (there && !*there) continue;
    PrintMessage(file + ": " + (there ? "exists already. Accepted: --overwrite or another name" : SystemErrorText()));
    return there ? EExit::OutputsExist : EExit::OutputFailed;
  }
  CatchStopRequests();
  const SSynthResult result = WriteSynthRecording(settings);
  if (!m_bQuiet) {
    for (const std::string& file : result.files) PrintOutLine(file);
  }
  if (result.nClipped > 0) {
    PrintMessage(Format("warning: %lld values lay beyond full scale and were cut; lower the levels",
                        static_cast<long long>(result.nClipped)));
  }
  if (!result.strError.empty()) {
    PrintMessage(result.strError);
    return EExit::OutputFailed;
  }
  return result.bStopped ? EExit::Stopped : EExit::Ok;
}

}  // namespace carvello
