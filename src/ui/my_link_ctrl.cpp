#include "ui/my_link_ctrl.h"

#include <QStyle>
#include <QStyleOptionFocusRect>
#include <QStylePainter>

namespace carvello {

namespace {
constexpr int kMargin = 3;  // room for the focus frame
}

CMyLinkCtrl::CMyLinkCtrl(QWidget* parent) : QPushButton(parent) {
  setFlat(true);
  setAutoDefault(false);
  setCursor(Qt::PointingHandCursor);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize CMyLinkCtrl::sizeHint() const {
  return fontMetrics().size(Qt::TextShowMnemonic, text()).grownBy({kMargin, kMargin, kMargin, kMargin});
}

void CMyLinkCtrl::paintEvent(QPaintEvent*) {
  QStylePainter painter(this);
  QFont linkFont = font();
  linkFont.setUnderline(underMouse() || hasFocus());
  painter.setFont(linkFont);
  int flags = Qt::AlignCenter;
  flags |= style()->styleHint(QStyle::SH_UnderlineShortcut, nullptr, this) != 0 ? Qt::TextShowMnemonic
                                                                                : Qt::TextHideMnemonic;
  painter.setPen(palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::Link));
  painter.drawText(rect(), flags, text());
  if (hasFocus()) {
    QStyleOptionFocusRect option;
    option.initFrom(this);
    painter.drawPrimitive(QStyle::PE_FrameFocusRect, option);
  }
}

}  // namespace carvello
