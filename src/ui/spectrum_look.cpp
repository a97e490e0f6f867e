#include "ui/spectrum_look.h"

#include <QSignalBlocker>
#include <iterator>

#include "support/text.h"
#include "ui/axis_ticks.h"
#include "ui/output_choices.h"
#include "ui_spectrum_window.h"

namespace carvello {

namespace {

constexpr std::uint32_t kRasters[] = {1'000, 5'000, 9'000, 10'000, 12'500, 25'000};
constexpr std::uint32_t kShortestTransform = 1'024;
constexpr std::uint32_t kLongestTransform = 1'048'576;

std::vector<SChoice> TransformChoices() {
  std::vector<SChoice> choices = {{"Follows the zoom", 0}};
  for (std::uint32_t points = kShortestTransform; points <= kLongestTransform; points *= 2) {
    const bool mega = points >= 1'048'576;
    choices.push_back({Format(mega ? "%u M" : "%u k", points / (mega ? 1'048'576 : 1'024)), points});
  }
  return choices;
}

std::vector<SChoice> RasterChoices() {
  std::vector<SChoice> choices = {{"Off", 0}};
  for (const std::uint32_t raster : kRasters) choices.push_back({WidthText(raster), raster});
  return choices;
}

}  // namespace

CSpectrumLookControls::CSpectrumLookControls(Ui::CSpectrumWindow& ui, CSpectrumScene& scene, CMySettingsStore& settings,
                                             QObject* pParent)
    : QObject(pParent), m_ui(ui), m_scene(scene), m_settings(settings) {
  Fill();
  Restore();
  const auto toScene = [this] { ToScene(); };
  connect(m_ui.comboShow, &QComboBox::currentIndexChanged, this, toScene);
  connect(m_ui.comboPalette, &QComboBox::currentIndexChanged, this, toScene);
  connect(m_ui.checkAutomatic, &QAbstractButton::toggled, this, toScene);
  connect(m_ui.spinLow, &QSpinBox::valueChanged, this, toScene);
  connect(m_ui.spinHigh, &QSpinBox::valueChanged, this, toScene);
  connect(&m_scene, &CSpectrumScene::LookChanged, this, &CSpectrumLookControls::FromScene);
  for (QComboBox* pList : {m_ui.comboTransform, m_ui.comboWindow}) {
    connect(pList, &QComboBox::currentIndexChanged, this, [this] {
      m_settings.Write("SpectrumTransform", SelectedValue(*m_ui.comboTransform));
      m_settings.Write("SpectrumWindow", SelectedValue(*m_ui.comboWindow));
      emit TransformChanged();
    });
  }
  connect(m_ui.comboRaster, &QComboBox::currentIndexChanged, this, [this] {
    m_settings.Write("SpectrumRaster", Raster());
    emit SnapChanged();
  });
  connect(m_ui.checkCarrier, &QAbstractButton::toggled, this, [this] {
    m_settings.Write("SpectrumCarrier", SnapsToCarrier());
    emit SnapChanged();
  });
  connect(m_ui.checkKeep, &QAbstractButton::toggled, this, [this] {
    m_settings.Write("SpectrumKeep", KeepsOverviews());
    emit KeepChanged();
  });
  FromScene();
}

void CSpectrumLookControls::Fill() {
  FillList(*m_ui.comboShow, {{"Average", 0}, {"Peak", 1}}, ESelect::First);
  FillList(*m_ui.comboTransform, TransformChoices(), ESelect::First);
  FillList(*m_ui.comboWindow,
           {{"Hann", static_cast<std::uint32_t>(EWindow::Hann)},
            {"Blackman-Harris", static_cast<std::uint32_t>(EWindow::BlackmanHarris)},
            {"Flat top", static_cast<std::uint32_t>(EWindow::FlatTop)}},
           ESelect::First);
  FillList(*m_ui.comboPalette,
           {{"Viridis", static_cast<std::uint32_t>(EPalette::Viridis)},
            {"Turbo", static_cast<std::uint32_t>(EPalette::Turbo)},
            {"Grey", static_cast<std::uint32_t>(EPalette::Grey)}},
           ESelect::First);
  FillList(*m_ui.comboRaster, RasterChoices(), ESelect::First);
}

void CSpectrumLookControls::Restore() {
  const auto select = [this](QComboBox& list, const char* name) {
    std::uint32_t value = SelectedValue(list);
    m_settings.Read(name, value);
    SelectByValue(list, value);
  };
  select(*m_ui.comboShow, "SpectrumPeak");
  select(*m_ui.comboTransform, "SpectrumTransform");
  select(*m_ui.comboWindow, "SpectrumWindow");
  select(*m_ui.comboPalette, "SpectrumPalette");
  select(*m_ui.comboRaster, "SpectrumRaster");
  bool carrier = false;
  m_settings.Read("SpectrumCarrier", carrier);
  m_ui.checkCarrier->setChecked(carrier);
  bool keep = true;
  m_settings.Read("SpectrumKeep", keep);
  m_ui.checkKeep->setChecked(keep);
  SSpectrumLook look = m_scene.Look();
  look.palette = static_cast<EPalette>(SelectedValue(*m_ui.comboPalette));
  look.bPeak = SelectedValue(*m_ui.comboShow) != 0;
  m_scene.SetLook(look);
}

std::size_t CSpectrumLookControls::Transform() const {
  return SelectedValue(*m_ui.comboTransform);
}

EWindow CSpectrumLookControls::Window() const {
  return static_cast<EWindow>(SelectedValue(*m_ui.comboWindow));
}

std::uint32_t CSpectrumLookControls::Raster() const {
  return SelectedValue(*m_ui.comboRaster);
}

bool CSpectrumLookControls::SnapsToCarrier() const {
  return m_ui.checkCarrier->isChecked();
}

bool CSpectrumLookControls::KeepsOverviews() const {
  return m_ui.checkKeep->isChecked();
}

void CSpectrumLookControls::ToScene() {
  SSpectrumLook look = m_scene.Look();
  look.palette = static_cast<EPalette>(SelectedValue(*m_ui.comboPalette));
  look.bPeak = SelectedValue(*m_ui.comboShow) != 0;
  const SLevels levels{static_cast<double>(m_ui.spinLow->value()), static_cast<double>(m_ui.spinHigh->value())};
  // Whoever sets a level by hand wants it to stay.
  look.bAutomatic = m_ui.checkAutomatic->isChecked() && levels == look.levels;
  look.levels = levels;
  m_settings.Write("SpectrumPalette", SelectedValue(*m_ui.comboPalette));
  m_settings.Write("SpectrumPeak", SelectedValue(*m_ui.comboShow));
  m_scene.SetLook(look);
}

void CSpectrumLookControls::FromScene() {
  const SSpectrumLook& look = m_scene.Look();
  const QSignalBlocker blockers[] = {QSignalBlocker(m_ui.checkAutomatic), QSignalBlocker(m_ui.spinLow),
                                     QSignalBlocker(m_ui.spinHigh)};
  m_ui.checkAutomatic->setChecked(look.bAutomatic);
  m_ui.spinLow->setValue(static_cast<int>(look.levels.dLow));
  m_ui.spinHigh->setValue(static_cast<int>(look.levels.dHigh));
}

}  // namespace carvello
