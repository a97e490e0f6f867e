// CAboutDlg: name, version and icon of the program.
#pragma once

#include <QDialog>
#include <memory>

namespace Ui {
class CAboutDlg;
}

namespace carvello {

class CAboutDlg : public QDialog {
  Q_OBJECT

 public:
  explicit CAboutDlg(QWidget* parent = nullptr);
  ~CAboutDlg() override;

 private:
  std::unique_ptr<Ui::CAboutDlg> m_ui;
};

}  // namespace carvello
