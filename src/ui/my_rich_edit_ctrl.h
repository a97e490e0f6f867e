// CMyRichEditCtrl: holds the help text, a resource in RTF. Showing it writes it into a file and opens that with the
// desktop's own program; where there is none, a window of ours shows the same text.
#pragma once

#include <QString>
#include <QTextBrowser>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace carvello {

// The number of the help text among the resources of type "RTF".
inline constexpr int kHelpResource = 135;

class CMyRichEditCtrl : public QTextBrowser {
  Q_OBJECT

 public:
  // Opens `path`; on false `errorText` tells why.
  using Opener = std::function<bool(const std::string& path, const std::string& verb, std::string& errorText)>;

  explicit CMyRichEditCtrl(QWidget* parent = nullptr);

  // False, and an empty text, when there is no such resource.
  bool Load(int resource = kHelpResource);
  // The text in RTF, line by line.
  const std::vector<std::string>& RtfLines() const { return m_lines; }
  // Shows the text to the user.
  void ShowHelp();
  // Writes the text as "Halvarn_000.rtf", or with the next number up to 99 that can be created. The path, empty when
  // none could.
  std::string WriteFile() const;

  // The folder that files are written into; the program's data folder of the user unless set. For tests.
  void SetFolder(const std::string& folder) { m_strFolder = folder; }
  // What opens files; the desktop unless set. For tests.
  void SetOpener(Opener opener) { m_opener = std::move(opener); }

 private:
  void ShowWindow();

  std::vector<std::string> m_lines;
  std::string m_strFolder;
  Opener m_opener;
};

}  // namespace carvello
