// CXMLMgr: builds a small XML document of nested text elements.
#pragma once

#include <memory>
#include <pugixml.hpp>
#include <string>
#include <utility>
#include <vector>

namespace carvello {

class CXMLMgr {
 public:
  using Attributes = std::vector<std::pair<std::string, std::string>>;

  // Starts a document, declared as UTF-8, and drops the one before.
  void Initialise();

  // The document itself, as the parent of its root element. Raises the invalid-pointer error before Initialise.
  pugi::xml_node Document();
  // Appends an element "base" without text.
  pugi::xml_node AddBase(pugi::xml_node parent);
  // Appends an element with its text. A blank in an attribute's name becomes "_-SPACE-_", since XML allows none there.
  pugi::xml_node AddElement(pugi::xml_node parent, const std::string& name, const std::string& text,
                            const Attributes& attributes = {});
  static void SetAttribute(pugi::xml_node element, const std::string& name, const std::string& value);

  // The whole document in UTF-8, without line breaks. Raises the invalid-pointer error before Initialise.
  std::string Text();

 private:
  std::unique_ptr<pugi::xml_document> m_pDocument;
};

}  // namespace carvello
