#include "support/json_text.h"

#include <nlohmann/json.hpp>

#include "support/text.h"

namespace carvello {

namespace {

constexpr std::size_t kIndent = 2;

std::string Dumped(const nlohmann::json& value) {
  return value.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

}  // namespace

void CJsonText::Add(std::string_view value) {
  AddRaw(Dumped(value));
}

void CJsonText::Add(bool value) {
  AddRaw(value ? "true" : "false");
}

void CJsonText::Add(double value) {
  AddRaw(Dumped(value));
}

void CJsonText::Key(std::string_view name) {
  StartItem();
  m_strText += Dumped(name) + ": ";
  m_bAfterKey = true;
}

std::string CJsonText::Document() const {
  return PrintableJson(m_strText) + "\n";
}

void CJsonText::AddRaw(std::string_view text) {
  StartItem();
  m_strText += text;
}

void CJsonText::Begin(char bracket) {
  StartItem();
  m_strText += bracket;
  ++m_nDepth;
  m_bFirst = true;
}

void CJsonText::End(char bracket) {
  --m_nDepth;
  if (!m_bFirst) BreakLine();
  m_strText += bracket;
  m_bFirst = false;
}

void CJsonText::StartItem() {
  if (m_bAfterKey) {
    m_bAfterKey = false;
    return;
  }
  if (!m_bFirst) m_strText += ',';
  if (m_nDepth != 0) BreakLine();
  m_bFirst = false;
}

void CJsonText::BreakLine() {
  m_strText += '\n';
  m_strText.append(kIndent * m_nDepth, ' ');
}

}  // namespace carvello
