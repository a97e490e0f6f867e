// CFieldScroller: a column of widgets that is shown whole where there is room for it, and scrolls where there is not,
// so that what stands below it can always be reached. The widget that has the keyboard is kept in view.
#pragma once

#include <QList>
#include <QScrollArea>

class QBoxLayout;

namespace carvello {

class CFieldScroller : public QScrollArea {
  Q_OBJECT

 public:
  // Takes the widgets out of the layout and stands in their place, at its beginning.
  CFieldScroller(QBoxLayout& layout, const QList<QWidget*>& widgets);
  ~CFieldScroller() override;

  QSize sizeHint() const override;         // of the whole column
  QSize minimumSizeHint() const override;  // as wide as the column needs, and high enough to scroll in

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void KeepInView(QWidget* pFocused);
};

}  // namespace carvello
