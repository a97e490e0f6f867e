#include "cli/cut_options.h"

namespace carvello {

const char* const kEntryHelp =
    "The input is read once for all entries. An entry E is key=value pairs separated by commas:\n"
    "  f=HZ         centre frequency; suffixes k, M and G and decimals allowed, for example f=7.1M\n"
    "  bw=HZ        bandwidth, which is also the sample rate of the output: from 10 Hz to the input's rate\n"
    "  bits=N       16 (integer, default) or 32 (float)\n"
    "  size=SIZE    100MB (default) or 1GB: files split at that size; RF64: one file\n"
    "  format=F     wav (default) or sigmf: a file of samples and a meta file\n"
    "  start=TIME   2026-11-21T12:00:00Z, any zone such as +02:00 instead of Z, or +SECONDS from the\n"
    "               recording's start, which is the default\n"
    "  end=TIME     as start; the recording's end is the default\n"
    "  duration=D   instead of end: seconds, H:MM or H:MM:SS\n\n";

const char* const kJobFileHelp =
    "Job file:\n"
    "  {\"input\": \"rec 000.wav\", \"output\": \"cuts\", \"entries\": [\n"
    "    {\"frequency\": \"7.1M\", \"bandwidth\": 10000, \"bits\": 16, \"size\": \"1GB\",\n"
    "     \"start\": \"2026-11-21T12:00:00Z\", \"duration\": \"0:10\"}]}\n"
    "  An entry can have an \"output\" of its own. \"local_time\": true is --local-time. \"part\", \"rate\",\n"
    "  \"centre\", \"start_time\", \"sample_type\" and \"time_zone\" are such options, for the file's own \"input\".\n"
    "  A bare number as start or end counts seconds from the recording's start. Options on the command line\n"
    "  win; --entry and --sequence replace all entries of the file.\n\n";

void AddEntryOptions(CCommandOptions& options, SCutOptions& values) {
  options.Add("--output", &values.strOutput, "Existing folder for the outputs").Value("DIR");
  options.Add("--entry", &values.entries, "An entry, see below; repeat for more").Value("E");
  options.Add("--sequence", &values.sequences, "An entry at every step, with --bw; repeat for more")
      .Value("FROM:TO:STEP");
  options.Add("--bw", &values.strBandwidth, "Bandwidth of the --sequence entries").Value("HZ");
  options.Add("--bits", &values.strBits, "Sample size of the --sequence entries, as bits below").Value("N");
  options.Add("--size", &values.strSize, "File size of the --sequence entries, as size below").Value("SIZE");
  options.Add("--start", &values.strStart, "Start of the --sequence entries, as start below").Value("TIME");
  options.Add("--end", &values.strEnd, "End of the --sequence entries, as end below").Value("TIME");
  options.Add("--duration", &values.strDuration, "Duration of the --sequence entries, as duration below").Value("D");
  options.Add("--jobs", &values.strJobFile, "Job file, see below").Value("FILE");
  options.Add("--engine", &values.strEngine, "auto (default), library or spectrum: how entries are filtered out")
      .Value("NAME");
  options.Add("--format", &values.strFormat, "Format of all entries, as format below").Value("F");
  options.Add("--sigmf-meta", &values.bSigMfMeta, "Write a SigMF meta file beside each WAV output");
  options.Add("--no-sync", &values.bNoSync, "Do not wait until outputs stand on the disk, safe from a power cut");
  options.Add("--ds64-frames", &values.bDs64Frames, "Tell the samples of RF64 files in frames, not in single values");
  options.Add("--local-time", &values.bLocalTime, "Local time instead of UTC in file names");
}

}  // namespace carvello
