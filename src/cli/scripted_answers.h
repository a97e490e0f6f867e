// CScriptedAnswers: answers the job control's questions from the command line's options, without asking anybody.
#pragma once

#include <string>

#include "engine/job_control.h"

namespace carvello {

class CScriptedAnswers : public IJobQuestions {
 public:
  // `overwrite` is the answer about files that exist: Yes, No to leave out what is finished, or Cancel.
  explicit CScriptedAnswers(EAnswer overwrite) : m_overwrite(overwrite) {}

  EAnswer Ask(EJobQuestion question, const SMessageBox& box) override;

  // The text of the last question or notice that stopped the job; empty when none did.
  const std::string& Reason() const { return m_strReason; }

 private:
  EAnswer m_overwrite;
  std::string m_strReason;
};

}  // namespace carvello
