#include "ui/my_rich_edit_ctrl.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QDir>
#include <QStandardPaths>
#include <QVBoxLayout>

#include "support/file.h"
#include "support/platform.h"
#include "support/shell_open.h"
#include "support/text.h"
#include "ui/resources.h"
#include "ui/rtf_text.h"

namespace carvello {

namespace {

constexpr std::string_view kEndMarker = "-#-EOF-#-";
constexpr int kMaxFiles = 100;

std::string DataFolder() {
  const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
  return QDir::toNativeSeparators(data + QStringLiteral("/Carvello")).toStdString();
}

// The desktop's opener says yes even when it then finds no program, so the program is asked about first.
bool OpenRtf(platform::WindowId parent, const std::string& path, const std::string& verb, std::string& errorText) {
  return platform::HasProgramFor(path, {"application/rtf", "text/rtf"}) && ShellOpen(parent, path, verb, errorText);
}

std::vector<std::string> SplitLines(std::string_view text) {
  std::vector<std::string> lines;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    lines.push_back(TrimRight(text.substr(0, end)));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return lines;
}

}  // namespace

CMyRichEditCtrl::CMyRichEditCtrl(QWidget* parent) : QTextBrowser(parent), m_strFolder(DataFolder()) {
  m_opener = [this](const std::string& path, const std::string& verb, std::string& errorText) {
    return OpenRtf(effectiveWinId(), path, verb, errorText);
  };
  setOpenExternalLinks(true);
}

bool CMyRichEditCtrl::Load(int resource) {
  clear();
  m_lines.clear();
  const auto text = LoadResource("RTF", resource);
  if (!text) {
    platform::DebugOutput(Format("CMyRichEditCtrl::Load(%d) Resource %08X", resource, platform::LastError()));
    return false;
  }
  const std::string_view rtf = std::string_view(*text).substr(0, text->find(kEndMarker));
  m_lines = SplitLines(rtf);
  setHtml(RtfToHtml(rtf));
  return true;
}

void CMyRichEditCtrl::ShowHelp() {
  const std::string path = WriteFile();
  std::string reason;
  if (path.empty() || !m_opener(path, "open", reason)) ShowWindow();
}

std::string CMyRichEditCtrl::WriteFile() const {
  QDir().mkpath(QString::fromStdString(m_strFolder));
  std::string text;
  for (const std::string& line : m_lines) text += line + "\n";
  for (int number = 0; number < kMaxFiles; ++number) {
    std::string path = platform::JoinPath(m_strFolder, Format("%s_%03d%s", "Halvarn", number, ".rtf"));
    const platform::FileHandle file = platform::OpenFile(path, platform::EOpenMode::Replace);
    if (file == platform::kNoFile) continue;
    const bool bWritten = platform::WriteFile(file, text.data(), text.size()) == text.size();
    if (platform::CloseFile(file) && bWritten) return path;
  }
  return {};
}

void CMyRichEditCtrl::ShowWindow() {
  auto* pWindow = new QDialog(window());
  pWindow->setAttribute(Qt::WA_DeleteOnClose);
  pWindow->setObjectName(QStringLiteral("CMyRichEditCtrl_window"));
  pWindow->setWindowTitle(tr("Carvello Help"));
  auto* pText = new QTextBrowser(pWindow);
  pText->setOpenExternalLinks(true);
  pText->setAccessibleName(tr("Help text"));
  pText->setHtml(toHtml());
  auto* pButtons = new QDialogButtonBox(QDialogButtonBox::Close, pWindow);
  connect(pButtons, &QDialogButtonBox::rejected, pWindow, &QDialog::close);
  auto* pLayout = new QVBoxLayout(pWindow);
  pLayout->addWidget(pText);
  pLayout->addWidget(pButtons);
  pWindow->resize(40 * fontMetrics().averageCharWidth() * 2, 40 * fontMetrics().lineSpacing());
  // Modeless: the text can stand beside the dialog while it is used.
  pWindow->show();
}

}  // namespace carvello
