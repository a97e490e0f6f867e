// Desktops with a launcher or dock show what a program tells by this signal on the session bus:
// https://wiki.ubuntu.com/Unity/LauncherAPI
#include <QDBusConnection>
#include <QDBusMessage>
#include <QGuiApplication>
#include <QVariantMap>

#include "ui/session_bus.h"
#include "ui/taskbar_progress.h"

namespace carvello {

namespace {

class CLauncherEntry : public CTaskbarProgress {
 public:
  explicit CLauncherEntry(const QDBusConnection& bus) : m_bus(bus) {}

  // A launcher keeps what it was told last, so the end has to take the bar away.
  ~CLauncherEntry() override { Send(0, false); }

  void SetValue(std::uint64_t position, std::uint64_t total) override {
    if (total > 0) Send(static_cast<double>(position) / static_cast<double>(total), position < total);
  }

 private:
  void Send(double fraction, bool bVisible) {
    QDBusMessage message =
        QDBusMessage::createSignal(QStringLiteral("/com/carvello/launcherentry"),
                                   QStringLiteral("com.canonical.Unity.LauncherEntry"), QStringLiteral("Update"));
    const QString desktopFile = QGuiApplication::desktopFileName();
    const QString program = desktopFile.isEmpty() ? QStringLiteral("carvello") : desktopFile;
    message << QStringLiteral("application://%1.desktop").arg(program)
            << QVariantMap{{QStringLiteral("progress"), fraction}, {QStringLiteral("progress-visible"), bVisible}};
    m_bus.send(message);
  }

  QDBusConnection m_bus;
};

}  // namespace

std::unique_ptr<CTaskbarProgress> CreateTaskbarProgress(QWidget* /*pMainWindow*/) {
  const auto bus = SessionBus();
  return bus ? std::make_unique<CLauncherEntry>(*bus) : nullptr;
}

}  // namespace carvello
