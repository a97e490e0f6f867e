#include "ui/about_dlg.h"

#include <QClipboard>
#include <QGuiApplication>
#include <string>
#include <utility>

#include "doctor/program_facts.h"
#include "ui/resources.h"
#include "ui_about.h"

namespace carvello {

namespace {

constexpr int kIconSize = 64;

// What --version tells behind its first line. It goes into reports as it is, in the language of those who read them.
QString Facts() {
  const std::string text = VersionReport();
  const std::size_t end = text.find('\n');
  return end == std::string::npos ? QString() : QString::fromStdString(text.substr(end + 1));
}

}  // namespace

CAboutDlg::CAboutDlg(SDoctorRequest request, QWidget* parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::CAboutDlg>()), m_request(std::move(request)) {
  m_request.linked = {{"Qt", qVersion()}, {"platform", QGuiApplication::platformName().toStdString()}};
  m_ui->setupUi(this);
  m_ui->icon->setPixmap(ProgramIcon().pixmap(QSize(kIconSize, kIconSize), devicePixelRatioF()));
  m_ui->facts->setText(Facts());
  m_ui->outcome->setText(m_request.bMeasure
                             ? tr("Copying measures the disks in use and a short cut, which takes some seconds.")
                             : tr("A job is at work, so the disks and a short cut are not measured."));
  connect(m_ui->IDC_1, &QPushButton::clicked, this, &QDialog::accept);
  connect(m_ui->buttonCopy, &QPushButton::clicked, this, &CAboutDlg::CopyDetails);
}

CAboutDlg::~CAboutDlg() = default;

void CAboutDlg::CopyDetails() {
  m_ui->buttonCopy->setEnabled(false);
  m_ui->outcome->setText(tr("Looking at the system…"));
  m_work.Run("Details", {}, [this, request = m_request]() -> std::function<void()> {
    std::string text = ReportText(MakeDoctorReport(request));
    return [this, text = std::move(text)] {
      QGuiApplication::clipboard()->setText(QString::fromStdString(text));
      m_ui->outcome->setText(tr("The details are on the clipboard."));
      m_ui->buttonCopy->setEnabled(true);
    };
  });
}

}  // namespace carvello
