// CMyMFCEditBrowseCtrl: a field for the path of a file or folder, with a browse button at its right end. While it is
// not being edited, a path that is too long is shown with its middle left out.
#pragma once

#include <QColor>
#include <QLineEdit>
#include <QStringList>
#include <QStyle>
#include <functional>

class QToolButton;

namespace carvello {

// A filter text "A (*.WAV)|*.WAV|B|*.X;*.Y||" as name filters of a file dialog. Where file names differ by case, the
// patterns are made to match any.
QStringList NameFilters(const QString& filterText, bool bCaseMatters);

// `wanted` when it can be read on `background`, else black or white.
QColor ReadableTextColour(const QColor& background, const QColor& wanted);

class CMyMFCEditBrowseCtrl : public QLineEdit {
  Q_OBJECT

 public:
  // What the browse button asks for.
  struct SBrowse {
    bool bFolder = false;
    QString title;
    QStringList nameFilters;  // of files
  };
  // Asks the user, from the present path on; an empty answer leaves the path as it is.
  using PathChooser = std::function<QString(QWidget* parent, const SBrowse& browse, const QString& path)>;

  // The one that asks with the desktop's own dialogs.
  static QString AskWithDialog(QWidget* parent, const SBrowse& browse, const QString& path);

  explicit CMyMFCEditBrowseCtrl(QWidget* parent = nullptr);

  void SetFileBrowse(const QString& filterText);
  void SetFolderBrowse(const QString& title);
  // Replaces AskWithDialog.
  void SetChooser(PathChooser chooser);
  QToolButton* BrowseButton() const { return m_pButton; }

  // Without the quotes, or as the path of the file: address, that it was typed or pasted with.
  QString Path() const;
  void SetPath(const QString& path);

 signals:
  void PathChanged();  // at every change of the text

 protected:
  bool event(QEvent* event) override;
  void changeEvent(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void ShowButton(SBrowse browse, QStyle::StandardPixmap icon, const QString& name);
  void Browse();
  void PlaceButton();
  QRect TextArea() const;
  bool IsElided() const;
  void ApplyColours();

  QToolButton* m_pButton;
  SBrowse m_browse;
  PathChooser m_chooser;
  bool m_bApplyingColours = false;
};

}  // namespace carvello
