#include "cli/synth_layout.h"

#include "cli/synth_programs.h"
#include "cli/synth_sigmf.h"
#include "support/platform.h"

namespace carvello {
namespace {

SSynthFacts FactsOf(const SSynthSettings& settings) {
  SSynthFacts facts;
  facts.kind = settings.raw.value_or(SSampleKind());
  facts.nSampleRate = settings.nSampleRate;
  facts.nCentre = settings.nCentre;
  facts.tStart = settings.tStart;
  facts.nFrames = settings.nFrames;
  return facts;
}

SSynthLayout LayOutSigMfFiles(const SSynthSettings& settings) {
  SSynthLayout layout;
  SSynthFacts facts = FactsOf(settings);
  const std::vector<std::string> paths = SynthFiles(settings);
  for (std::uint32_t i = 0; i < settings.nFiles; ++i) {
    facts.nFrames = SynthFrames(settings, i);
    layout.files.push_back(LayOutSigMf(facts, settings.captures, paths[i]));
    facts.nFirstFrame += facts.nFrames + (settings.captures.nCount - 1) * settings.captures.nLost;
  }
  if (settings.sigmf == ESynthSigMf::Collection) layout.over = {LayOutCollection(settings.strPath, layout.files)};
  return layout;
}

}  // namespace

SSynthLayout LayOutSynth(const SSynthSettings& settings) {
  if (settings.sigmf) return LayOutSigMfFiles(settings);
  SSynthFacts facts = FactsOf(settings);
  if (settings.pProgram != nullptr) {
    facts.strFileName = settings.bNamed ? platform::NameOf(settings.strPath) : SynthFileName(*settings.pProgram, facts);
    const std::string path =
        settings.bNamed ? settings.strPath : platform::JoinPath(settings.strPath, facts.strFileName);
    return {{LayOutProgramFile(*settings.pProgram, facts, path)}, {}};
  }
  SSynthFile file;
  file.strPath = settings.strPath;
  file.kind = facts.kind;
  file.nFrames = facts.nFrames;
  return {{file}, {}};
}

std::vector<std::string> SynthPaths(const SSynthSettings& settings) {
  if (!settings.raw) return SynthFiles(settings);
  const SSynthLayout layout = LayOutSynth(settings);
  std::vector<std::string> paths;
  for (const SSynthFile& file : layout.files) {
    paths.push_back(file.strPath);
    for (const SSynthText& text : file.describing) paths.push_back(text.strPath);
  }
  for (const SSynthText& text : layout.over) paths.push_back(text.strPath);
  return paths;
}

}  // namespace carvello
