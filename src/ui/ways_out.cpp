#include "ui/ways_out.h"

#include <QCoreApplication>

#include "support/platform.h"

namespace carvello {

namespace {

std::string Translated(const char* text) {
  return QCoreApplication::translate("WaysOut", text).toStdString();
}

}  // namespace

std::string WayOutOfOpening(std::uint32_t error) {
  if (error != 0) return WayOutOfReading(error);
  return Translated(
      QT_TRANSLATE_NOOP("WaysOut",
                        "No program of this desktop takes it. Open it with a program of your own, or install "
                        "the desktop's opener; on Linux that is xdg-open, of the package xdg-utils."));
}

std::string WayOutOfReading(std::uint32_t error) {
  if (error == 0) return {};
  if (platform::MeansMissing(error)) {
    return Translated(
        QT_TRANSLATE_NOOP("WaysOut", "It is not there any more. Connect its disk or put it back, or choose another."));
  }
  if (platform::MeansRefused(error)) {
    return Translated(QT_TRANSLATE_NOOP("WaysOut", "It is there, but may not be read. Ask for the right to read it."));
  }
  return Translated(
      QT_TRANSLATE_NOOP("WaysOut", "Its disk or the connection to it is failing. Check it, then try again."));
}

std::string WayOutOfSaving() {
  return Translated(QT_TRANSLATE_NOOP(
      "WaysOut", "The list is still there. Save it in another place with Save As, in the menu of Job."));
}

std::string WayOutOfStart(EStartResult result, std::uint32_t error) {
  const bool missing = error != 0 && platform::MeansMissing(error);
  switch (result) {
    case EStartResult::InputUnsupported:
      if (missing) {
        return Translated(QT_TRANSLATE_NOOP(
            "WaysOut",
            "The recording is gone since it was chosen. Connect its disk or put it back, then start again."));
      }
      if (error == 0) return {};
      if (!platform::MeansRefused(error)) return WayOutOfReading(error);
      return Translated(
          QT_TRANSLATE_NOOP("WaysOut",
                            "The recording is there, but cannot be read. Ask for the right to read it, or "
                            "copy it to where you may."));
    case EStartResult::OutputUnwritable:
      if (missing) {
        return Translated(QT_TRANSLATE_NOOP(
            "WaysOut", "Create the folder or connect its disk, or choose another folder for the entries."));
      }
      if (platform::MeansRefused(error)) {
        return Translated(QT_TRANSLATE_NOOP("WaysOut", "Choose a folder for the entries that you may write to."));
      }
      return Translated(QT_TRANSLATE_NOOP(
          "WaysOut", "Nothing can be written there. Choose another folder for the entries, or check its disk."));
    case EStartResult::OutputIsInput:
      return Translated(QT_TRANSLATE_NOOP("WaysOut", "Choose another folder for the entries."));
    default:
      return {};
  }
}

std::string WayOutOfNoAnswer() {
  return Translated(QT_TRANSLATE_NOOP(
      "WaysOut", "Connect the disk or choose another folder, then start again; what exists is left out."));
}

std::string WayOutOfFailures() {
  return Translated(
      QT_TRANSLATE_NOOP("WaysOut", "What failed stays on the list: put the cause right, and press Start again."));
}

std::string WithWayOut(const std::string& text, const std::string& wayOut) {
  return wayOut.empty() ? text : text + "\n\n" + wayOut;
}

}  // namespace carvello
