// Reads a text into a document of pugixml's, which takes a want of memory for one more way in which a text is broken.
#pragma once

#include <new>
#include <pugixml.hpp>
#include <string_view>

namespace carvello {

// `xml`: UTF-8. Throws std::bad_alloc.
inline pugi::xml_parse_result LoadXml(pugi::xml_document& document, std::string_view xml) {
  const pugi::xml_parse_result result =
      document.load_buffer(xml.data(), xml.size(), pugi::parse_default, pugi::encoding_utf8);
  if (result.status == pugi::status_out_of_memory) throw std::bad_alloc();
  return result;
}

}  // namespace carvello
