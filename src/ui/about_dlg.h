// CAboutDlg: name, version and icon of the program, and what a report about a fault needs.
#pragma once

#include <QDialog>
#include <memory>

#include "doctor/doctor_report.h"
#include "ui/patient_work.h"

namespace Ui {
class CAboutDlg;
}

namespace carvello {

class CAboutDlg : public QDialog {
  Q_OBJECT

 public:
  // `request`: the folders that the report looks at, and whether it may measure, which takes some seconds.
  explicit CAboutDlg(SDoctorRequest request = {}, QWidget* parent = nullptr);
  ~CAboutDlg() override;

 private:
  void CopyDetails();

  std::unique_ptr<Ui::CAboutDlg> m_ui;
  SDoctorRequest m_request;
  CPatientWork m_work;  // looking at folders, whose disks may not answer
};

}  // namespace carvello
