// A question or notice for the user, as data: the dialog shows it as a message box, the command line answers it.
#pragma once

#include <string>

namespace carvello {

enum class EButtons { Ok, YesNo, YesNoCancel };
enum class EIcon { Stop, Question, Exclamation };
enum class EAnswer { Ok, Yes, No, Cancel };

struct SMessageBox {
  std::string strCaption;
  std::string strText;
  EButtons buttons = EButtons::Ok;
  EIcon icon = EIcon::Stop;
};

}  // namespace carvello
