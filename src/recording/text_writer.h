// CTextWriter: collects in a string what pugixml writes.
#pragma once

#include <cstddef>
#include <pugixml.hpp>
#include <string>

namespace carvello {

class CTextWriter final : public pugi::xml_writer {
 public:
  void write(const void* data, std::size_t size) override { m_strText.append(static_cast<const char*>(data), size); }
  const std::string& Text() const { return m_strText; }

 private:
  std::string m_strText;
};

}  // namespace carvello
