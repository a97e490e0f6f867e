// CMyLinkCtrl: a button that looks like a link.
#pragma once

#include <QPushButton>

namespace carvello {

class CMyLinkCtrl : public QPushButton {
  Q_OBJECT

 public:
  explicit CMyLinkCtrl(QWidget* parent = nullptr);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace carvello
