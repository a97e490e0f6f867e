#include "recording/xml_mgr.h"

#include <new>

#include "recording/text_writer.h"
#include "support/hresult.h"
#include "support/text.h"

namespace carvello {

void CXMLMgr::Initialise() {
  m_pDocument = std::make_unique<pugi::xml_document>();
  pugi::xml_node declaration = m_pDocument->append_child(pugi::node_pi);
  declaration.set_name("xml");
  declaration.set_value("version='1.0' encoding='UTF-8'");
}

pugi::xml_node CXMLMgr::Document() {
  if (!m_pDocument) ThrowHResult(kPointer, "XML document");
  return *m_pDocument;
}

pugi::xml_node CXMLMgr::AddBase(pugi::xml_node parent) {
  return AddElement(parent, "base", "");
}

pugi::xml_node CXMLMgr::AddElement(pugi::xml_node parent, const std::string& name, const std::string& text,
                                   const Attributes& attributes) {
  pugi::xml_node element = parent.append_child(name.c_str());
  if (!element || (!text.empty() && !element.text().set(text.c_str()))) throw std::bad_alloc();
  for (const auto& [attribute, value] : attributes) {
    SetAttribute(element, ReplaceAll(attribute, " ", "_-SPACE-_"), value);
  }
  return element;
}

void CXMLMgr::SetAttribute(pugi::xml_node element, const std::string& name, const std::string& value) {
  pugi::xml_attribute attribute = element.attribute(name.c_str());
  if (!attribute) attribute = element.append_attribute(name.c_str());
  if (!attribute.set_value(value.c_str())) throw std::bad_alloc();
}

std::string CXMLMgr::Text() {
  CTextWriter writer;
  Document().print(writer, "", pugi::format_raw, pugi::encoding_utf8);
  return writer.Text();
}

}  // namespace carvello
