#include "ui/outcome_label.h"

#include <QEvent>

#include "ui/english_texts.h"

namespace carvello {

COutcomeLabel::COutcomeLabel(QWidget* parent) : QLabel(parent) {
  QFont bold = font();
  bold.setBold(true);
  setFont(bold);
  setTextFormat(Qt::PlainText);
  SetText({});
}

bool COutcomeLabel::SetText(const SToneText& text) {
  const QString shown = InLanguage(text.strText);
  const bool bNews = shown != this->text();
  setText(shown);
  // A reader of the screen says the name only, so it carries the text.
  setAccessibleName(shown.isEmpty() ? tr("Outcome") : tr("Outcome: %1").arg(shown));
  m_tone = text.tone;
  UpdateColour();
  return bNews;
}

void COutcomeLabel::changeEvent(QEvent* event) {
  QLabel::changeEvent(event);
  if (event->type() == QEvent::PaletteChange || event->type() == QEvent::ParentChange) UpdateColour();
}

void COutcomeLabel::UpdateColour() {
  if (parentWidget() == nullptr) return;
  const QPalette& around = parentWidget()->palette();
  const QColor colour =
      ToneColour(m_tone, {around.color(QPalette::Window)}, around.color(QPalette::Active, QPalette::WindowText));
  // A palette of one role, so that all others go on following the theme; set only when it changes, for it comes back
  // here as an event.
  if (palette().color(QPalette::WindowText) == colour) return;
  QPalette own;
  own.setColor(QPalette::WindowText, colour);
  setPalette(own);
}

}  // namespace carvello
