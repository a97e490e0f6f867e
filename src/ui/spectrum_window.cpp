#include "ui/spectrum_window.h"

#include <QApplication>
#include <QClipboard>
#include <QFileInfo>
#include <QKeyEvent>
#include <QShortcut>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>
#include <utility>

#include "support/text.h"
#include "ui/axis_ticks.h"
#include "ui/choice_finder.h"
#include "ui/field_scroller.h"
#include "ui/mnemonics.h"
#include "ui/picture_file.h"
#include "ui/resources.h"
#include "ui/spoken_text.h"
#include "ui_spectrum_window.h"

namespace carvello {

namespace {

constexpr char kGeometryKey[] = "SpectrumGeometry";
constexpr int kProgressRange = 1000;
constexpr int kRest = 10;  // milliseconds between two pictures: an endless row of news must not keep a click waiting

std::unique_ptr<Ui::CSpectrumWindow> BuildControls(CSpectrumWindow& window) {
  auto ui = std::make_unique<Ui::CSpectrumWindow>();
  ui->setupUi(&window);
  return ui;
}

CSpectrumPlot* AddPlot(QWidget& place, CSpectrumScene& scene) {
  auto* pLayout = new QVBoxLayout(&place);
  pLayout->setContentsMargins(0, 0, 0, 0);
  auto* pPlot = new CSpectrumPlot(scene, &place);
  pLayout->addWidget(pPlot);
  return pPlot;
}

std::int64_t FramesOf(const CRecordingSet& recording) {
  const std::int64_t frameBytes = std::int64_t{recording.nBitsPerSample} / 8 * 2;
  return frameBytes > 0 ? recording.TotalBytes() / frameBytes : 0;
}

QString FileNameOf(const CRecordingSet& recording) {
  const QString path = QString::fromStdString(recording.files.front().strPath);
  return QString::fromStdString(Printable(QFileInfo(path).fileName().toStdString()));
}

// Without edges they are of all frequencies.
std::vector<SNote> NotesOf(const CRecordingSet& recording) {
  const auto centre = static_cast<double>(recording.nRadioCenterFreq);
  const double half = recording.nSampleRate / 2.0;
  std::vector<SNote> notes;
  notes.reserve(recording.annotations.size());
  for (const SRecordingAnnotation& told : recording.annotations) {
    const double lower = told.lowerEdge.value_or(centre - half);
    const double upper = told.upperEdge.value_or(centre + half);
    const auto first = static_cast<double>(told.nFirstFrame);
    const std::string& text = told.strLabel.empty() ? told.strComment : told.strLabel;
    notes.push_back({{std::min(lower, upper), std::max(lower, upper)},
                     {first, first + static_cast<double>(told.nFrames)},
                     QString::fromStdString(Printable(text))});
  }
  return notes;
}

}  // namespace

CSpectrumWindow::CSpectrumWindow(SourceMaker makeSource, CMySettingsStore& settings, QWidget* parent)
    : QWidget(parent, Qt::Window),
      m_ui(BuildControls(*this)),
      m_makeSource(std::move(makeSource)),
      m_pPlot(AddPlot(*m_ui->plot, m_scene)),
      m_look(*m_ui, m_scene, settings, this),
      m_cutting(m_scene, *m_pPlot, this),
      m_signals(*m_ui, m_scene, this),
      m_place(*this, kGeometryKey) {
  setWindowIcon(ProgramIcon());
  MakeMnemonicsImmediate(*this);
  MakeChoicesFindable(*this);
  m_request.setSingleShot(true);
  m_request.setInterval(0);
  m_rest.setSingleShot(true);
  m_rest.setInterval(kRest);
  m_ui->progressOverview->setFixedWidth(12 * fontMetrics().averageCharWidth());
  QSizePolicy policy = m_ui->progressOverview->sizePolicy();
  policy.setRetainSizeWhenHidden(true);  // or everything would move when it goes
  m_ui->progressOverview->setSizePolicy(policy);
  // On a low screen the controls scroll.
  new CFieldScroller(*m_ui->panelLayout, {m_ui->viewGroup, m_ui->levelGroup, m_ui->cutGroup, m_ui->signalGroup});
  ConnectControls();
  ShowCut();
  ShowProgress();
  m_place.Restore();
  m_pPlot->Waterfall().setFocus();
}

// The source's workers may go on for a moment; what they tell then is dropped.
// Hidden while all is still there that the parts tell of the focus that they lose.
CSpectrumWindow::~CSpectrumWindow() {
  hide();
}

void CSpectrumWindow::ConnectControls() {
  CWaterfallView& waterfall = m_pPlot->Waterfall();
  const auto request = [this] { m_request.start(); };
  connect(&m_scene, &CSpectrumScene::ViewChanged, this, request);
  connect(&waterfall, &CWaterfallView::Resized, this, request);
  connect(&m_look, &CSpectrumLookControls::TransformChanged, this, request);
  connect(&m_request, &QTimer::timeout, this, &CSpectrumWindow::RequestPicture);
  connect(&m_rest, &QTimer::timeout, this, [this] {
    if (std::exchange(m_bNews, false)) TakeNews();
  });
  connect(&waterfall, &CWaterfallView::KeyPressed, this, [this](QKeyEvent* event) {
    if (m_cutting.Do(PlotKeyOf(event->key(), event->modifiers()))) event->accept();
  });

  connect(&m_scene, &CSpectrumScene::CursorChanged, this, &CSpectrumWindow::ShowReading);
  connect(&m_scene, &CSpectrumScene::PictureChanged, this, &CSpectrumWindow::ShowReading);
  connect(&m_scene, &CSpectrumScene::PictureChanged, this, &CSpectrumWindow::ShowView);
  connect(&m_scene, &CSpectrumScene::ViewChanged, this, &CSpectrumWindow::ShowView);
  connect(&m_scene, &CSpectrumScene::BandsChanged, this, &CSpectrumWindow::ShowCut);

  const auto snap = [this] {
    m_cutting.SetRaster(m_look.Raster());
    m_cutting.SetCarrier(m_look.SnapsToCarrier());
  };
  connect(&m_look, &CSpectrumLookControls::SnapChanged, this, snap);
  snap();
  connect(&m_look, &CSpectrumLookControls::KeepChanged, this, &CSpectrumWindow::OpenSource);

  connect(&m_cutting, &CSpectrumCutting::CutChosen, this, &CSpectrumWindow::CutChosen);
  connect(&m_cutting, &CSpectrumCutting::CutDropped, this, &CSpectrumWindow::CutDropped);
  connect(&m_cutting, &CSpectrumCutting::AddPressed, this, &CSpectrumWindow::AddPressed);
  connect(&m_cutting, &CSpectrumCutting::DeletePressed, this, &CSpectrumWindow::DeletePressed);
  connect(&m_cutting, &CSpectrumCutting::EntryChanged, this, &CSpectrumWindow::EntryChanged);
  connect(&m_cutting, &CSpectrumCutting::EntriesSelected, this, &CSpectrumWindow::EntriesSelected);
  connect(&m_cutting, &CSpectrumCutting::MarkClicked, &m_signals, &CSignalList::Choose);
  connect(&m_signals, &CSignalList::CutsWanted, this, &CSpectrumWindow::CutsWanted);
  connect(m_ui->buttonAdd, &QAbstractButton::clicked, &m_cutting, &CSpectrumCutting::Add);
  connect(m_ui->buttonDrop, &QAbstractButton::clicked, &m_cutting, &CSpectrumCutting::Drop);
  connect(m_ui->buttonSave, &QAbstractButton::clicked, this, &CSpectrumWindow::SavePicture);
  connect(m_ui->buttonCopy, &QAbstractButton::clicked, this, &CSpectrumWindow::CopyPicture);

  const auto shortcut = [this](const QKeySequence& keys, const auto& action) {
    connect(new QShortcut(keys, this), &QShortcut::activated, this, action);
  };
  shortcut(QKeySequence::Undo, &CSpectrumWindow::UndoPressed);
  // The systems have different keys for it, and people use both.
  shortcut(Qt::CTRL | Qt::Key_Y, &CSpectrumWindow::RedoPressed);
  shortcut(Qt::CTRL | Qt::SHIFT | Qt::Key_Z, &CSpectrumWindow::RedoPressed);
  shortcut(QKeySequence::Save, &CSpectrumWindow::SavePicture);
  shortcut(QKeySequence::Copy, &CSpectrumWindow::CopyPicture);
  shortcut(Qt::Key_F6, &CSpectrumWindow::BackPressed);
}

void CSpectrumWindow::SetRecording(const CRecordingSet* pRecording, bool utc) {
  // What was made of it stays, and so does the view.
  if (pRecording != nullptr && m_pRecording != nullptr && IsSameRecording(*pRecording, *m_pRecording)) {
    m_scene.SetUtc(utc);
    m_scene.SetNotes(NotesOf(*pRecording));
    return;
  }
  m_pRecording = pRecording == nullptr ? nullptr : std::make_unique<CRecordingSet>(*pRecording);
  m_pSource.reset();
  SShownRecording shown;
  SCutRules rules;
  if (m_pRecording != nullptr) {
    shown = {FramesOf(*m_pRecording), m_pRecording->nSampleRate, m_pRecording->nRadioCenterFreq,
             m_pRecording->tStart,    m_pRecording->tEnd,        utc};
    rules = {shown.tStart, shown.tEnd, shown.nFrames, shown.nSampleRate, m_look.Raster()};
    setWindowTitle(tr("Spectrum - %1").arg(FileNameOf(*m_pRecording)));
  } else {
    setWindowTitle(tr("Spectrum"));
  }
  m_cutting.SetSource(nullptr);
  m_signals.SetSource(nullptr);
  m_scene.SetRules(rules);
  m_scene.SetRecording(shown);
  if (m_pRecording != nullptr) m_scene.SetNotes(NotesOf(*m_pRecording));
  if (isVisible()) OpenSource();
}

// Anew, also where one is open: what it keeps is decided when it is opened.
void CSpectrumWindow::OpenSource() {
  m_pSource.reset();
  if (m_pRecording != nullptr && !m_scene.IsEmpty()) {
    m_pSource = m_makeSource(*m_pRecording, m_look.KeepsOverviews(),
                             [this, post = m_calls.MakePoster()] { post([this] { TakeNews(); }); });
  }
  m_cutting.SetSource(m_pSource.get());
  m_signals.SetSource(m_pSource.get());
  UpdatePause();
  m_request.start();
  ShowProgress();
}

void CSpectrumWindow::SetBands(std::vector<SBand> bands) {
  m_scene.SetBands(std::move(bands));
}

void CSpectrumWindow::SetPending(const std::optional<SCut>& cut) {
  m_scene.SetPending(cut);
}

void CSpectrumWindow::SetAllowed(bool changes, bool adds) {
  m_cutting.SetAllowed(changes);
  m_signals.SetAllowed(changes && adds);
  m_bAdds = changes && adds;
  ShowCut();
}

void CSpectrumWindow::SetJob(bool runs) {
  m_bJob = runs;
  UpdatePause();
  ShowCut();
}

std::shared_ptr<IBlockListener> CSpectrumWindow::Listener() const {
  return m_pSource == nullptr ? nullptr : m_pSource->Listener();
}

// The disk is the job's while one runs, and nobody's while there is nothing to look at.
void CSpectrumWindow::UpdatePause() {
  if (m_pSource != nullptr) m_pSource->Pause(m_bJob || !isVisible());
  ShowProgress();
}

void CSpectrumWindow::RequestPicture() {
  const QSize pixels = m_pPlot->Waterfall().Pixels();
  if (m_pSource == nullptr || pixels.isEmpty()) return;
  const auto centre = static_cast<double>(m_scene.Recording().nCentre);
  SSpectrumView view;
  view.dFirstFrame = m_scene.Frames().Shown().dFrom;
  view.dFrames = m_scene.Frames().Shown().Length();
  view.dLowFrequency = m_scene.Frequencies().Shown().dFrom - centre;
  view.dHighFrequency = m_scene.Frequencies().Shown().dTo - centre;
  view.nColumns = pixels.width();
  view.nRows = pixels.height();
  view.nTransform = m_look.Transform();
  view.window = m_look.Window();
  m_pSource->Show(view);
}

void CSpectrumWindow::TakeNews() {
  if (m_rest.isActive()) {
    m_bNews = true;
    return;
  }
  TakePicture();
  m_rest.start();
}

void CSpectrumWindow::TakePicture() {
  if (m_pSource == nullptr) return;
  m_scene.SetPicture(m_pSource->Picture());
  ShowProgress();
}

void CSpectrumWindow::ShowReading() {
  const QString reading = m_scene.Reading();
  if (reading == m_ui->labelReading->text()) return;
  ShowSpoken(*m_ui->labelReading, reading);
  m_pPlot->Waterfall().SetReading(reading);
}

void CSpectrumWindow::ShowView() {
  if (m_scene.IsEmpty()) {
    ShowSpoken(*m_ui->labelView, {});
    return;
  }
  const auto shown = [](const std::string& value) { return QString::fromStdString(value); };
  QString text =
      shown(WidthText(m_scene.Frequencies().Shown().Length()) + " × " + LengthText(m_scene.Seconds().Length()));
  const SSpectrumPicture* pPicture = m_scene.Picture();
  if (pPicture != nullptr && pPicture->nTransform > 0) {
    const double bin = static_cast<double>(m_scene.Recording().nSampleRate) / static_cast<double>(pPicture->nTransform);
    text = tr("%1 · %2 points, %3 a bin").arg(text).arg(pPicture->nTransform).arg(shown(WidthText(bin)));
  }
  ShowSpoken(*m_ui->labelView, text);
}

void CSpectrumWindow::ShowProgress() {
  const double progress = m_pSource == nullptr ? 0.0 : m_pSource->Progress();
  const std::string problem = m_pSource == nullptr ? std::string() : m_pSource->Problem();
  QString text;
  if (!problem.empty()) {
    text = QString::fromStdString(Printable(problem));
  } else if (m_pSource == nullptr) {
    text = tr("No recording");
  } else if (progress >= 1.0) {
    text = tr("Overview complete");
  } else {
    text = (m_bJob ? tr("Job runs, overview %1 %") : tr("Overview %1 %")).arg(std::floor(progress * 100.0));
  }
  if (text == m_ui->labelProgress->text()) return;
  ShowSpoken(*m_ui->labelProgress, text);
  m_ui->labelProgress->setToolTip(text);
  m_ui->progressOverview->setValue(static_cast<int>(progress * kProgressRange));
  m_ui->progressOverview->setVisible(m_pSource != nullptr && progress < 1.0);
}

void CSpectrumWindow::ShowCut() {
  const std::optional<SCut>& cut = m_scene.Pending();
  const bool some = cut.has_value();
  QString text = some ? CutText(*cut, m_scene) : tr("Drag over the waterfall");
  if (some && !m_bAdds) text += m_bJob ? tr(". To be added after the run") : tr(". Choose an output folder to add it");
  m_ui->labelCut->setText(text);
  m_ui->labelCut->setAccessibleName(tr("What is to be cut: %1").arg(m_ui->labelCut->text()));
  m_ui->buttonAdd->setEnabled(some && m_bAdds);
  m_ui->buttonDrop->setEnabled(some);
}

QString CSpectrumWindow::PictureTitle() const {
  if (m_scene.IsEmpty()) return {};
  const SShownRecording& recording = m_scene.Recording();
  const SSpan seconds = m_scene.Seconds();
  const auto time = [&](double at) { return TimeReading(at, recording.tStart, recording.bUtc, 1.0); };
  const std::string text =
      FileNameOf(*m_pRecording).toStdString() + "   " + time(seconds.dFrom) + " to " + time(seconds.dTo);
  return QString::fromStdString(text);
}

void CSpectrumWindow::SavePicture() {
  if (!m_scene.IsEmpty()) SavePictureFile(this, m_pPlot->Picture(PictureTitle()));
}

void CSpectrumWindow::CopyPicture() {
  if (!m_scene.IsEmpty()) QApplication::clipboard()->setImage(m_pPlot->Picture(PictureTitle()));
}

void CSpectrumWindow::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  if (m_pSource == nullptr) {
    OpenSource();
  } else {
    UpdatePause();
  }
}

void CSpectrumWindow::hideEvent(QHideEvent* event) {
  m_place.Save();
  UpdatePause();
  QWidget::hideEvent(event);
}

}  // namespace carvello
