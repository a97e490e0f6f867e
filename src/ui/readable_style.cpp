#include "ui/readable_style.h"

#include <QPainter>
#include <QStyleOption>

#include "ui/readable_colours.h"

namespace carvello {

namespace {

constexpr double kTextContrast = 5.5;  // 4.5 by the guidelines, and some for shaded backgrounds and thin strokes
constexpr double kMarkContrast = 3.2;  // 3 by them
constexpr double kCorner = 1.5;        // pixels
constexpr int kShade = 150;            // per cent

}  // namespace

QPalette WithReadableDisabledTexts(QPalette palette) {
  struct SText {
    QPalette::ColorRole text;
    QList<QPalette::ColorRole> backgrounds;
  };
  // A field that cannot be used has the colour of the window in many styles.
  const SText texts[] = {{QPalette::WindowText, {QPalette::Window}},
                         {QPalette::Text, {QPalette::Base, QPalette::Window}},
                         {QPalette::ButtonText, {QPalette::Button, QPalette::Window}}};
  for (const SText& item : texts) {
    QList<QColor> backgrounds;
    for (const QPalette::ColorRole role : item.backgrounds) backgrounds << palette.color(QPalette::Disabled, role);
    // Buttons are shaded, and in a dark theme end well above their colour.
    if (item.text == QPalette::ButtonText) backgrounds << backgrounds.front().lighter(kShade);
    const QColor strongest = palette.color(QPalette::Active, item.text);
    palette.setColor(QPalette::Disabled, item.text,
                     Strengthened(palette.color(QPalette::Disabled, item.text), strongest, backgrounds, kTextContrast));
  }
  return palette;
}

void CReadableStyle::polish(QPalette& palette) {
  QProxyStyle::polish(palette);
  palette = WithReadableDisabledTexts(palette);
}

void CReadableStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                                   const QWidget* widget) const {
  QProxyStyle::drawPrimitive(element, option, painter, widget);
  if (element != PE_IndicatorCheckBox && element != PE_IndicatorRadioButton) return;
  // An outline around what the style has drawn. Styles that draw in their desktop's way see to theirs.
  if (baseStyle()->name().compare(QLatin1String("fusion"), Qt::CaseInsensitive) != 0) return;
  const QColor window = option->palette.color(QPalette::Window);
  const QColor base = option->palette.color(QPalette::Base);
  const QColor mark = Strengthened(window, option->palette.color(QPalette::Active, QPalette::WindowText),
                                   {window, base}, kMarkContrast);
  painter->save();
  painter->setRenderHint(QPainter::Antialiasing);
  painter->setPen(QPen(mark, 1.0));
  painter->setBrush(Qt::NoBrush);
  const QRectF edge = QRectF(option->rect).adjusted(0.5, 0.5, -0.5, -0.5);
  if (element == PE_IndicatorCheckBox) {
    painter->drawRoundedRect(edge, kCorner, kCorner);
  } else {
    painter->drawEllipse(edge);
  }
  painter->restore();
}

}  // namespace carvello
