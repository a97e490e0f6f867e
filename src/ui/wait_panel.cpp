#include "ui/wait_panel.h"

#include <QAccessible>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTimer>

#include "support/text.h"

namespace carvello {

CWaitPanel::CWaitPanel(const QLayout* pCovered, QWidget* pParent)
    : QFrame(pParent), m_pCovered(pCovered), m_pLabel(new QLabel(this)), m_pButton(new QPushButton(this)) {
  setAutoFillBackground(true);
  m_pLabel->setTextFormat(Qt::PlainText);
  m_pLabel->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);  // a path may be longer than the window
  m_pButton->setObjectName(QStringLiteral("buttonGiveUp"));
  m_pButton->setAutoDefault(false);
  auto* pLayout = new QHBoxLayout(this);
  pLayout->setContentsMargins(0, 0, 0, 0);
  pLayout->addWidget(m_pLabel, 1);
  pLayout->addWidget(m_pButton);
  connect(m_pButton, &QPushButton::clicked, this, [this] {
    if (m_bWaits) {
      emit GiveUpPressed();
    } else {
      emit TryAgainPressed();
    }
  });
  pParent->installEventFilter(this);
  hide();
}

void CWaitPanel::ShowWaiting(const std::string& place) {
  Show(tr("Waiting for %1…").arg(QString::fromStdString(Printable(place))), tr("Give up"), true);
}

void CWaitPanel::ShowGivenUp(const std::string& place) {
  Show(tr("No answer from %1").arg(QString::fromStdString(Printable(place))), tr("Try again"), false);
}

void CWaitPanel::Show(const QString& text, const QString& button, bool waits) {
  m_bWaits = waits;
  m_text = text;
  m_pButton->setText(button);
  m_pButton->setToolTip(waits ? tr("Stop waiting for the disk or the network, also with Esc") : tr("Read it again"));
  setGeometry(m_pCovered->geometry());
  show();
  raise();
  ShowText();
  QAccessibleEvent event(m_pLabel, QAccessible::Alert);
  QAccessible::updateAccessibility(&event);
}

void CWaitPanel::ShowText() {
  layout()->activate();
  m_pLabel->setText(m_pLabel->fontMetrics().elidedText(m_text, Qt::ElideMiddle, m_pLabel->width()));
  m_pLabel->setToolTip(m_text);
  m_pLabel->setAccessibleName(m_text);
}

bool CWaitPanel::eventFilter(QObject* pWatched, QEvent* event) {
  // The layout follows the same event, but behind its filters.
  if (event->type() == QEvent::Resize || event->type() == QEvent::LayoutRequest) {
    QTimer::singleShot(0, this, [this] { setGeometry(m_pCovered->geometry()); });
  }
  return QFrame::eventFilter(pWatched, event);
}

void CWaitPanel::resizeEvent(QResizeEvent* event) {
  QFrame::resizeEvent(event);
  ShowText();
}

}  // namespace carvello
