#include "ui/about_dlg.h"

#include "ui/resources.h"
#include "ui_about.h"

namespace carvello {

namespace {

constexpr int kIconSize = 64;

}  // namespace

CAboutDlg::CAboutDlg(QWidget* parent) : QDialog(parent), m_ui(std::make_unique<Ui::CAboutDlg>()) {
  m_ui->setupUi(this);
  m_ui->icon->setPixmap(ProgramIcon().pixmap(QSize(kIconSize, kIconSize), devicePixelRatioF()));
  connect(m_ui->IDC_1, &QPushButton::clicked, this, &QDialog::accept);
}

CAboutDlg::~CAboutDlg() = default;

}  // namespace carvello
