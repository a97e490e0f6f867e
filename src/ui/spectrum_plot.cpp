#include "ui/spectrum_plot.h"

#include <QGridLayout>
#include <QPainter>

#include "ui/known_strip.h"
#include "ui/spoken_text.h"

namespace carvello {

namespace {

constexpr int kMargin = 10;  // around a picture

void Describe(QWidget& part, const char* name, const QString& accessibleName, const QString& tip) {
  part.setObjectName(QLatin1String(name));
  part.setAccessibleName(accessibleName);
  part.setToolTip(tip);
}

}  // namespace

CSpectrumPlot::CSpectrumPlot(CSpectrumScene& scene, QWidget* parent)
    : QWidget(parent),
      m_scene(scene),
      m_pLine(new CSpectrumLine(scene, this)),
      m_pWaterfall(new CWaterfallView(scene, this)),
      m_pFrequencyAxis(new CFrequencyAxis(scene, this)),
      m_pClock(new QLabel(this)) {
  auto* pLevelAxis = new CLevelAxis(*m_pLine, this);
  auto* pTimeAxis = new CTimeAxis(scene, this);
  auto* pScale = new CLevelScale(scene, this);
  auto* pKnown = new CKnownStrip(scene, this);
  Describe(*m_pLine, "spectrumLine", tr("Spectrum line"), {});
  Describe(*m_pWaterfall, "waterfall", tr("Waterfall"), {});
  Describe(*m_pFrequencyAxis, "frequencyAxis", tr("Frequencies"),
           tr("Drag to choose frequencies for the whole recording; double-click to show all"));
  Describe(*pTimeAxis, "timeAxis", tr("Times"), tr("Drag to pan; double-click to show all"));
  Describe(*pLevelAxis, "levelAxis", tr("Levels of the line"), tr("Levels of the line"));
  Describe(*pScale, "levelScale", tr("Scale of levels"),
           tr("Drag the handles to set the levels of the colours; double-click for automatic levels"));
  Describe(*pKnown, "knownStrip", tr("How well the rows are known"),
           tr("Full: every sample was looked at. Dotted: some were. Empty: what is beside it stands in, or nothing is "
              "known"));
  Describe(*m_pClock, "labelClock", tr("Clock"), tr("The clock that the times are of, as in the main window"));
  for (QWidget* pPart : {static_cast<QWidget*>(m_pLine), static_cast<QWidget*>(m_pFrequencyAxis),
                         static_cast<QWidget*>(pTimeAxis), static_cast<QWidget*>(pScale)}) {
    pPart->setFocusProxy(m_pWaterfall);  // keys go there wherever a part is clicked
  }
  m_pClock->setAlignment(Qt::AlignRight | Qt::AlignBottom);
  m_pClock->setContentsMargins(0, 0, 6, 2);

  auto* pLayout = new QGridLayout(this);
  pLayout->setContentsMargins(0, 0, 0, 0);
  pLayout->setSpacing(0);
  pLayout->addWidget(pLevelAxis, 0, 0);
  pLayout->addWidget(m_pLine, 0, 2);
  pLayout->addWidget(m_pClock, 1, 0);
  pLayout->addWidget(m_pFrequencyAxis, 1, 2);
  pLayout->addWidget(pTimeAxis, 2, 0);
  pLayout->addWidget(pKnown, 2, 1);
  pLayout->addWidget(m_pWaterfall, 2, 2);
  pLayout->addWidget(pScale, 0, 4, 3, 1);
  pLayout->setColumnMinimumWidth(3, 8);
  pLayout->setColumnStretch(2, 1);
  pLayout->setRowStretch(0, 2);
  pLayout->setRowStretch(2, 7);
  connect(&scene, &CSpectrumScene::RecordingChanged, this, &CSpectrumPlot::ShowClock);
}

void CSpectrumPlot::ShowClock() {
  ShowSpoken(*m_pClock, m_scene.IsEmpty() ? QString() : m_scene.Recording().bUtc ? tr("UTC") : tr("local"));
}

QImage CSpectrumPlot::Picture(const QString& text) {
  const std::optional<SCursor> cursor = m_scene.Cursor();
  m_scene.SetCursor(std::nullopt);
  const int line = fontMetrics().height();
  const double ratio = devicePixelRatioF();
  const QSize whole = size() + QSize(2 * kMargin, 2 * kMargin + 2 * line);
  QImage image(whole * ratio, QImage::Format_RGB32);
  image.setDevicePixelRatio(ratio);
  image.fill(palette().color(QPalette::Window));
  QPainter painter(&image);
  painter.setFont(font());
  painter.setPen(palette().color(QPalette::WindowText));
  painter.drawText(QRect(kMargin, kMargin, whole.width() - 2 * kMargin, line), Qt::AlignLeft,
                   fontMetrics().elidedText(text, Qt::ElideMiddle, whole.width() - 2 * kMargin));
  render(&painter, QPoint(kMargin, kMargin + 2 * line));
  painter.end();
  m_scene.SetCursor(cursor);
  return image;
}

}  // namespace carvello
