#include "ui/offer_strip.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QToolButton>

namespace carvello {

COfferStrip::COfferStrip(QWidget* pParent)
    : QFrame(pParent), m_pText(new QLabel(this)), m_pTake(new QPushButton(this)), m_pDismiss(new QToolButton(this)) {
  setFrameShape(QFrame::StyledPanel);
  m_pText->setTextFormat(Qt::PlainText);  // a path may look like markup
  m_pText->setWordWrap(true);
  m_pTake->setAutoDefault(false);
  m_pDismiss->setText(QStringLiteral("✕"));
  m_pDismiss->setAutoRaise(true);
  m_pDismiss->setToolTip(tr("Leave it as it is"));
  m_pDismiss->setAccessibleName(tr("Dismiss"));
  m_pDismiss->setFocusPolicy(Qt::StrongFocus);
  auto* pLayout = new QHBoxLayout(this);
  pLayout->setContentsMargins(6, 2, 2, 2);
  pLayout->addWidget(m_pText, 1);
  pLayout->addWidget(m_pTake);
  pLayout->addWidget(m_pDismiss);
  setTabOrder(m_pTake, m_pDismiss);
  setFocusProxy(m_pTake);  // so that both buttons come where the strip stands in the order of tabs
  connect(m_pTake, &QAbstractButton::clicked, this, &COfferStrip::Taken);
  connect(m_pDismiss, &QAbstractButton::clicked, this, &COfferStrip::Dismiss);
  hide();
}

void COfferStrip::Offer(const QString& text, const QString& button) {
  m_pText->setText(text);
  m_pTake->setText(button);
  // Who comes to the button by keyboard hears what it is about.
  m_pTake->setAccessibleDescription(text);
  m_pDismiss->setAccessibleDescription(text);
  setAccessibleName(text);
  show();
}

void COfferStrip::Clear() {
  hide();
}

void COfferStrip::Dismiss() {
  Clear();
  emit Dismissed();
}

void COfferStrip::keyPressEvent(QKeyEvent* event) {
  if (event->key() != Qt::Key_Escape) {
    QFrame::keyPressEvent(event);
    return;
  }
  Dismiss();
}

}  // namespace carvello
