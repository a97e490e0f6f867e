#include "cli/cut_options.h"

#include <CLI/CLI.hpp>

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

void AddEntryOptions(CLI::App& app, SCutOptions& options) {
  SCutOptions& o = options;
  app.add_option("--output", o.strOutput, "Existing folder for the outputs")->type_name("DIR");
  app.add_option("--entry", o.entries, "An entry, see below; repeat for more")->allow_extra_args(false)->type_name("E");
  app.add_option("--sequence", o.sequences, "An entry at every step, with --bw; repeat for more")
      ->allow_extra_args(false)
      ->type_name("FROM:TO:STEP");
  app.add_option("--bw", o.strBandwidth, "Bandwidth of the --sequence entries")->type_name("HZ");
  app.add_option("--bits", o.strBits, "Sample size of the --sequence entries, as bits below")->type_name("N");
  app.add_option("--size", o.strSize, "File size of the --sequence entries, as size below")->type_name("SIZE");
  app.add_option("--start", o.strStart, "Start of the --sequence entries, as start below")->type_name("TIME");
  app.add_option("--end", o.strEnd, "End of the --sequence entries, as end below")->type_name("TIME");
  app.add_option("--duration", o.strDuration, "Duration of the --sequence entries, as duration below")->type_name("D");
  app.add_option("--jobs", o.strJobFile, "Job file, see below")->type_name("FILE");
  app.add_option("--engine", o.strEngine, "auto (default), library or spectrum: how entries are filtered out")
      ->type_name("NAME");
  app.add_option("--format", o.strFormat, "Format of all entries, as format below")->type_name("F");
  app.add_flag("--sigmf-meta", o.bSigMfMeta, "Write a SigMF meta file beside each WAV output");
  app.add_flag("--no-sync", o.bNoSync, "Do not wait until outputs stand on the disk, safe from a power cut");
  app.add_flag("--ds64-frames", o.bDs64Frames, "Tell the samples of RF64 files in frames, not in single values");
  app.add_flag("--local-time", o.bLocalTime, "Local time instead of UTC in file names");
}

}  // namespace carvello
