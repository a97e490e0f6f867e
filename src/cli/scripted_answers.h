// CScriptedAnswers: answers the job control's questions from the command line's options, without asking anybody.
#pragma once

#include <string>

#include "engine/job_control.h"

namespace carvello {

class CScriptedAnswers : public IJobQuestions {
 public:
  explicit CScriptedAnswers(bool overwrite) : m_bOverwrite(overwrite) {}

  EAnswer Ask(EJobQuestion question, const SMessageBox& box) override;

  // The text of the last question or notice that stopped the job; empty when none did.
  const std::string& Reason() const { return m_strReason; }

 private:
  bool m_bOverwrite;
  std::string m_strReason;
};

}  // namespace carvello
