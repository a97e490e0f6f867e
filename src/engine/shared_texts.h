// CSharedText, CSharedMetadata: what all entries of a recording have in common and none changes, kept once however many
// hold it. A recording may carry megabytes of metadata, and a list a hundred thousand entries.
#pragma once

#include <memory>
#include <string>
#include <utility>

#include "recording/metadata_xml.h"

namespace carvello {

class CSharedText {
 public:
  CSharedText() = default;
  CSharedText& operator=(std::string text) {
    m_pText = std::make_shared<const std::string>(std::move(text));
    return *this;
  }

  const std::string& Text() const {
    static const std::string none;
    return m_pText ? *m_pText : none;
  }

 private:
  std::shared_ptr<const std::string> m_pText;
};

// An XML metadata text, read once for all who look something up in it.
class CSharedMetadata {
 public:
  CSharedMetadata() = default;
  CSharedMetadata& operator=(std::string xml) {
    SMetadataLists lists;
    ParseMetadataXml(xml, lists);
    m_pLists = std::make_shared<const SMetadataLists>(std::move(lists));
    m_text = std::move(xml);
    return *this;
  }

  const std::string& Text() const { return m_text.Text(); }
  const SMetadataLists& Lists() const {
    static const SMetadataLists none;
    return m_pLists ? *m_pLists : none;
  }

 private:
  CSharedText m_text;
  std::shared_ptr<const SMetadataLists> m_pLists;
};

}  // namespace carvello
