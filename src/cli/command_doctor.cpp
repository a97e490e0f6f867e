#include "cli/command_doctor.h"

#include <algorithm>

#include "cli/console.h"
#include "cli/help_texts.h"
#include "doctor/doctor_report.h"

namespace carvello {

void CDoctorCommand::AddOptions(CCommandOptions& options) {
  options.Add("FOLDER", &m_folders, "folders of recordings, whose disks are looked at; the present one unless given");
  options.Add("--json", &m_bJson, "print one JSON object");
  options.Add("--no-speed", &m_bNoSpeed, "measure nothing: nothing is written, and no cut is tried");
  options.SetFooter(
      std::string(
          "The report tells versions, commit and compiler of the program and its library; names and versions of\n"
          "system and processor, limits of processors and memory, locale and time zone; paths of the program\n"
          "and of the folders that it uses and that are named, with \"~\" for the home folder, and the file\n"
          "systems, free space and speed of the latter. It tells nothing of what is in folders or files, and\n"
          "no names of users, machines or networks but where they stand in these paths.\n"
          "What cannot be found is told with the reason; the exit code is 1 only when a short cut goes wrong.\n"
          "\n"
          "Examples:\n"
          "  carvello-cli doctor\n"
          "  carvello-cli doctor /data/recordings /data/cuts --json\n\n") +
      kExitCodesHelp);
}

EExit CDoctorCommand::Run() {
  if (std::find(m_folders.begin(), m_folders.end(), "") != m_folders.end()) {
    PrintMessage("FOLDER: a name is empty. Accepted: the path of a folder");
    return EExit::Usage;
  }
  SDoctorRequest request;
  request.folders = m_folders.empty() ? std::vector<std::string>{"."} : m_folders;
  request.bMeasure = !m_bNoSpeed;
  const SReport report = MakeDoctorReport(request);
  PrintOut(m_bJson ? ReportJson(report) : ReportText(report));
  if (report.bSound) return EExit::Ok;
  PrintMessage("doctor: the short cut gave a wrong result");
  return EExit::OutputFailed;
}

}  // namespace carvello
