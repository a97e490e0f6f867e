#include "ui/job_questions.h"

#include <QCoreApplication>
#include <QFileDialog>
#include <QMessageBox>
#include <QPushButton>
#include <QSettings>

#include "support/text.h"
#include "ui/patient_work.h"

namespace carvello {

namespace {

constexpr char kFolderKey[] = "JobFolder";

QStringList Filters() {
  return {QCoreApplication::translate("JobQuestions", "Job files (*.json)"),
          QCoreApplication::translate("JobQuestions", "All files (*)")};
}

std::string Chosen(QFileDialog& dialog) {
  dialog.setNameFilters(Filters());
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return {};
  QSettings().setValue(kFolderKey, dialog.directory().absolutePath());
  return QDir::toNativeSeparators(dialog.selectedFiles().first()).toStdString();
}

EClosing AskBeforeLosing(QWidget* pWindow, std::size_t entries, const QString& title, const QString& lose,
                         const QString& hint) {
  QMessageBox box(QMessageBox::Question, title,
                  QCoreApplication::translate("JobQuestions", "Entries that were neither run nor saved: %1")
                      .arg(static_cast<qulonglong>(entries)),
                  QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, pWindow);
  box.setInformativeText(hint);
  box.button(QMessageBox::Save)->setText(QCoreApplication::translate("JobQuestions", "&Save…"));
  box.button(QMessageBox::Discard)->setText(lose);
  box.setDefaultButton(QMessageBox::Save);
  box.setEscapeButton(QMessageBox::Cancel);
  switch (box.exec()) {
    case QMessageBox::Save:
      return EClosing::Save;
    case QMessageBox::Discard:
      return EClosing::Close;
    default:
      return EClosing::Stay;
  }
}

}  // namespace

std::string AskForJobToOpen(QWidget* pWindow) {
  QFileDialog dialog(pWindow, QCoreApplication::translate("JobQuestions", "Open Job"),
                     FolderToBegin(QSettings().value(kFolderKey).toString()));
  dialog.setFileMode(QFileDialog::ExistingFile);
  return Chosen(dialog);
}

std::string AskForJobToSave(QWidget* pWindow, const std::string& present) {
  QFileDialog dialog(pWindow, QCoreApplication::translate("JobQuestions", "Save Job"),
                     FolderToBegin(QSettings().value(kFolderKey).toString()));
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setDefaultSuffix(QStringLiteral("json"));
  if (!present.empty() && AnswersSoon(present)) dialog.selectFile(QString::fromStdString(present));
  return Chosen(dialog);
}

EJobUse AskJobUse(QWidget* pWindow, const std::string& recording, bool canOpen, bool hasTimes) {
  QMessageBox box(QMessageBox::Question, QCoreApplication::translate("JobQuestions", "Open Job"),
                  QCoreApplication::translate("JobQuestions", "The job was made for another recording:\n%1")
                      .arg(QString::fromStdString(Printable(recording))),
                  QMessageBox::NoButton, pWindow);
  box.setTextFormat(Qt::PlainText);  // a path may look like markup
  if (canOpen)
    box.addButton(QMessageBox::Open)->setText(QCoreApplication::translate("JobQuestions", "&Open That Recording"));
  QPushButton* pApply = box.addButton(QMessageBox::Yes);
  pApply->setText(QCoreApplication::translate("JobQuestions", "&Apply to This One"));
  if (hasTimes) {
    box.setInformativeText(QCoreApplication::translate(
        "JobQuestions",
        "Applied to the recording that is open, its times can be shifted, to lie as long after the start as they did "
        "there, or stay the same dates and times."));
    pApply->setText(QCoreApplication::translate("JobQuestions", "Apply, &Shifted"));
    box.addButton(QMessageBox::No)->setText(QCoreApplication::translate("JobQuestions", "Apply, Same &Times"));
  }
  box.addButton(QMessageBox::Cancel);
  box.setDefaultButton(canOpen ? QMessageBox::Open : QMessageBox::Yes);
  box.setEscapeButton(QMessageBox::Cancel);
  switch (box.exec()) {
    case QMessageBox::Open:
      return EJobUse::OpenRecording;
    case QMessageBox::Yes:
      return EJobUse::Shifted;
    case QMessageBox::No:
      return EJobUse::SameTimes;
    default:
      return EJobUse::Nothing;
  }
}

EClosing AskBeforeClosing(QWidget* pWindow, std::size_t entries, bool kept) {
  const QString hint = QCoreApplication::translate(
      "JobQuestions", "The list is kept, and offered when this recording is opened the next time.");
  return AskBeforeLosing(pWindow, entries, QCoreApplication::translate("JobQuestions", "Close"),
                         QCoreApplication::translate("JobQuestions", "&Close"), kept ? hint : QString());
}

EClosing AskBeforeReplacing(QWidget* pWindow, std::size_t entries, const QString& title) {
  return AskBeforeLosing(pWindow, entries, title, QCoreApplication::translate("JobQuestions", "&Replace"), QString());
}

}  // namespace carvello
