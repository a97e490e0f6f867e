#include "ui/announcer.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <utility>

#if QT_VERSION < QT_VERSION_CHECK(6, 8, 0)
#include "ui/reader_notice.h"
#endif

namespace carvello {

namespace {

constexpr int kMomentMilliseconds = 300;
constexpr qsizetype kMostAtOnce = 3;
constexpr int kParts = 10;

class CNotification : public QAccessibleWidget {
 public:
  explicit CNotification(CAnnouncer* pAnnouncer) : QAccessibleWidget(pAnnouncer, QAccessible::Notification) {}

  QString text(QAccessible::Text kind) const override {
    if (kind == QAccessible::Name) return static_cast<CAnnouncer*>(widget())->Told();
    return QAccessibleWidget::text(kind);
  }
};

QAccessibleInterface* MakeNotification(const QString& /*className*/, QObject* pObject) {
  auto* pAnnouncer = qobject_cast<CAnnouncer*>(pObject);
  return pAnnouncer == nullptr ? nullptr : new CNotification(pAnnouncer);
}

}  // namespace

CAnnouncer::CAnnouncer(QWidget* pWindow) : QWidget(pWindow) {
  QAccessible::installFactory(MakeNotification);  // the same one again changes nothing
  setObjectName(QStringLiteral("announcer"));
  setAttribute(Qt::WA_TransparentForMouseEvents);
  resize(1, 1);
  m_timer.setSingleShot(true);
  m_timer.setInterval(kMomentMilliseconds);
  connect(&m_timer, &QTimer::timeout, this, &CAnnouncer::Tell);
}

void CAnnouncer::Announce(const QString& text) {
  if (text.isEmpty()) return;
  if (m_waiting.size() < kMostAtOnce) {
    m_waiting << text;
  } else {
    ++m_nMore;
  }
  if (!m_timer.isActive()) m_timer.start();
}

void CAnnouncer::AnnounceOutcome(const QString& text) {
  m_strOutcome = text;
  if (!text.isEmpty() && !m_timer.isActive()) m_timer.start();
}

void CAnnouncer::AnnounceProgress(double share) {
  const int tenths = static_cast<int>(share * kParts);
  if (tenths <= m_nTenths || tenths >= kParts) return;  // the end is told by the outcome
  m_nTenths = tenths;
  m_strProgress = tr("Progress: %1 %").arg(tenths * 100 / kParts);
  if (!m_timer.isActive()) m_timer.start();
}

void CAnnouncer::Tell() {
  QStringList told = std::exchange(m_waiting, {});
  if (const int more = std::exchange(m_nMore, 0); more > 0) told << tr("and %1 more").arg(more);
  const QString progress = std::exchange(m_strProgress, {}), outcome = std::exchange(m_strOutcome, {});
  if (!outcome.isEmpty()) {
    told.prepend(outcome);
  } else if (!progress.isEmpty()) {
    told.prepend(progress);
  }
  m_strTold = told.join(QLatin1Char('\n'));
  if (m_strTold.isEmpty()) return;
#if QT_VERSION >= QT_VERSION_CHECK(6, 8, 0)
  QAccessibleAnnouncementEvent event(this, m_strTold);
  QAccessible::updateAccessibility(&event);
#else
  NotifyReaders(this, m_strTold);
#endif
  emit Announced(m_strTold);
}

}  // namespace carvello
