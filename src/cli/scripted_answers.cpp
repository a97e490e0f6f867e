#include "cli/scripted_answers.h"

namespace carvello {

EAnswer CScriptedAnswers::Ask(EJobQuestion question, const SMessageBox& box) {
  switch (question) {
    case EJobQuestion::TooManyEntries:
    case EJobQuestion::ContinueBatch:
      return EAnswer::Yes;  // batch follows batch
    case EJobQuestion::OverwriteFiles:
      if (m_overwrite == EAnswer::Cancel) m_strReason = box.strText;
      return m_overwrite;
    case EJobQuestion::AllFilesExist:
    case EJobQuestion::CannotStart:
      break;
  }
  m_strReason = box.strText;
  return EAnswer::Ok;
}

}  // namespace carvello
