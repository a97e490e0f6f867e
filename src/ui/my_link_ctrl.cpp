#include "ui/my_link_ctrl.h"

#include <QStyle>
#include <QStyleOptionFocusRect>
#include <QStylePainter>

#include "ui/readable_colours.h"

namespace carvello {

namespace {
constexpr int kMargin = 3;  // room for the focus frame
constexpr double kContrast = 4.8;
}  // namespace

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
  // The theme's colour, as far as it can be read on the theme's background.
  const QPalette::ColorGroup group = isEnabled() ? QPalette::Active : QPalette::Disabled;
  painter.setPen(Strengthened(palette().color(group, QPalette::Link), palette().color(group, QPalette::WindowText),
                              {palette().color(group, QPalette::Window)}, kContrast));
  painter.drawText(rect(), flags, text());
  if (hasFocus()) {
    QStyleOptionFocusRect option;
    option.initFrom(this);
    painter.drawPrimitive(QStyle::PE_FrameFocusRect, option);
  }
}

}  // namespace carvello
