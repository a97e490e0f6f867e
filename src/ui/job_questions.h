// What the user is asked about jobs as files.
#pragma once

#include <cstddef>
#include <string>

class QString;
class QWidget;

namespace carvello {

// A job file to open or to write; empty when the user wants none. `present` is the file that the list is of, if any.
std::string AskForJobToOpen(QWidget* pWindow);
std::string AskForJobToSave(QWidget* pWindow, const std::string& present);

// What becomes of a job that was made for another recording.
enum class EJobUse { Nothing, OpenRecording, Shifted, SameTimes };
// `canOpen`: its recording is there. `hasTimes`: it makes a difference whether it is shifted in time.
EJobUse AskJobUse(QWidget* pWindow, const std::string& recording, bool canOpen, bool hasTimes);

// What becomes of entries that were neither run nor saved, when the window is to close or something else to take their
// place. `kept`: they are offered again. `title`: what would replace them.
enum class EClosing { Stay, Save, Close };
EClosing AskBeforeClosing(QWidget* pWindow, std::size_t entries, bool kept);
EClosing AskBeforeReplacing(QWidget* pWindow, std::size_t entries, const QString& title);

}  // namespace carvello
