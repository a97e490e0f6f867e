// CReadableStyle: the desktop's style, with disabled texts that can still be read, for during a run they tell what is
// being done, and with check boxes and radio buttons that can be seen in a dark theme.
#pragma once

#include <QPalette>
#include <QProxyStyle>

namespace carvello {

// The palette with its disabled texts made as strong as they must be to be read; what is strong enough stays.
QPalette WithReadableDisabledTexts(QPalette palette);

class CReadableStyle : public QProxyStyle {
  Q_OBJECT

 public:
  // `name` as QStyleFactory knows it.
  explicit CReadableStyle(const QString& name) : QProxyStyle(name) {}

  using QProxyStyle::polish;
  void polish(QPalette& palette) override;
  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
};

}  // namespace carvello
