#include "ui/signal_list.h"

#include <QHeaderView>
#include <QTreeWidget>
#include <algorithm>
#include <cmath>
#include <utility>

#include "engine/offered_bandwidths.h"
#include "support/text.h"
#include "ui/axis_ticks.h"
#include "ui/english_texts.h"
#include "ui/spoken_text.h"
#include "ui_spectrum_window.h"

namespace carvello {

namespace {

constexpr int kListWidth = 220;

std::size_t IndexOf(const QTreeWidgetItem& item) {
  return item.data(0, Qt::UserRole).toULongLong();
}

}  // namespace

CSignalList::CSignalList(Ui::CSpectrumWindow& ui, CSpectrumScene& scene, QObject* pParent)
    : QObject(pParent), m_ui(ui), m_scene(scene) {
  QTreeWidget& list = *m_ui.listSignals;
  list.setHeaderLabels({tr("MHz"), tr("Width"), tr("dB")});
  list.header()->setSectionsMovable(false);
  list.setMinimumWidth(kListWidth);
  connect(m_ui.buttonFind, &QAbstractButton::clicked, this, &CSignalList::FindOrStop);
  connect(m_ui.buttonTake, &QAbstractButton::clicked, this, [this] { Take(false); });
  connect(m_ui.buttonTakeAll, &QAbstractButton::clicked, this, [this] { Take(true); });
  connect(&list, &QTreeWidget::itemActivated, this, [this] { Take(false); });
  connect(&list, &QTreeWidget::itemSelectionChanged, this, [this] {
    const QList<QTreeWidgetItem*> selected = m_ui.listSignals->selectedItems();
    m_scene.ChooseMark(selected.size() == 1 ? std::optional(IndexOf(*selected.first())) : std::nullopt);
    Update();
  });
  Update();
}

void CSignalList::SetSource(ISpectrumSource* pSource) {
  m_pSource = pSource;
  End();
  m_scene.SetMarks({});
  Show();
  ShowSpoken(*m_ui.labelSignals, {});
  Update();
}

void CSignalList::SetAllowed(bool allowed) {
  m_bAllowed = allowed;
  Update();
}

void CSignalList::Choose(std::size_t signal) {
  for (int i = 0; i < m_ui.listSignals->topLevelItemCount(); ++i) {
    QTreeWidgetItem* pItem = m_ui.listSignals->topLevelItem(i);
    if (IndexOf(*pItem) != signal) continue;
    m_ui.listSignals->clearSelection();
    m_ui.listSignals->setCurrentItem(pItem);
    m_ui.listSignals->scrollToItem(pItem);
  }
}

void CSignalList::FindOrStop() {
  if (m_pSource == nullptr) return;
  if (m_bSearching) {
    m_pSource->EndSearch();
    End();
    ShowSpoken(*m_ui.labelSignals, tr("Stopped"));
    Update();
    return;
  }
  const SSpan& frames = m_scene.Frames().Shown();
  const SSpan frequencies = m_scene.Frequencies().Shown();
  m_bSearching = true;
  ShowSpoken(*m_ui.labelSignals, tr("Looking…"));
  m_scene.SetMarks({});
  Show();
  Update();
  const int search = ++m_nSearch;
  m_pSource->Search({frames.dFrom, frames.Length(), static_cast<double>(m_ui.spinAbove->value()),
                     static_cast<double>(m_scene.Rules().nRaster)},
                    [this, search, frequencies, post = m_calls.MakePoster()](const SSearchNews& news) {
                      post([this, search, frequencies, news] {
                        if (search == m_nSearch) Tell(news, frequencies);
                      });
                    });
}

void CSignalList::Tell(const SSearchNews& news, const SSpan& frequencies) {
  if (!news.bEnded) {
    ShowSpoken(*m_ui.labelSignals, tr("Looking… %1 %").arg(std::floor(news.dDone * 100.0)));
    return;
  }
  End();
  if (!news.strProblem.empty()) {
    ShowSpoken(*m_ui.labelSignals, InLanguage(Printable(news.strProblem)));
  } else {
    std::vector<SFoundSignal> found = news.found;
    std::erase_if(found, [&](const SFoundSignal& signal) { return !frequencies.Holds(signal.dFrequency); });
    ShowSpoken(*m_ui.labelSignals, found.empty()       ? tr("Nothing stands out of the noise")
                                   : found.size() == 1 ? tr("1 signal found")
                                                       : tr("%1 signals found").arg(found.size()));
    m_scene.SetMarks(std::move(found));
    Show();
  }
  Update();
}

void CSignalList::End() {
  ++m_nSearch;
  m_bSearching = false;
}

void CSignalList::Show() {
  QTreeWidget& list = *m_ui.listSignals;
  list.clear();
  for (std::size_t i = 0; i < m_scene.Marks().size(); ++i) {
    const SFoundSignal& signal = m_scene.Marks()[i];
    auto* pItem = new QTreeWidgetItem(&list, {QString::fromStdString(Format("%.4f", signal.dFrequency / 1e6)),
                                              QString::fromStdString(WidthText(std::round(signal.dBandwidth))),
                                              QString::fromStdString(Format("%.1f", signal.dSnr))});
    pItem->setData(0, Qt::UserRole, static_cast<qulonglong>(i));
    pItem->setTextAlignment(2, Qt::AlignRight);
  }
  for (int column = 0; column < list.columnCount(); ++column) list.resizeColumnToContents(column);
}

void CSignalList::Update() {
  m_ui.buttonFind->setText(m_bSearching ? tr("Stop searchin&g") : tr("&Find signals"));
  m_ui.buttonFind->setEnabled(m_pSource != nullptr);
  const bool some = !m_scene.Marks().empty() && m_bAllowed;
  m_ui.buttonTake->setEnabled(some && !m_ui.listSignals->selectedItems().isEmpty());
  m_ui.buttonTakeAll->setEnabled(some);
}

void CSignalList::Take(bool all) {
  if (!m_bAllowed) return;
  std::vector<SCut> cuts;
  for (int i = 0; i < m_ui.listSignals->topLevelItemCount(); ++i) {
    const QTreeWidgetItem* pItem = m_ui.listSignals->topLevelItem(i);
    if (!all && !pItem->isSelected()) continue;
    const SFoundSignal& signal = m_scene.Marks()[IndexOf(*pItem)];
    SCut cut;
    cut.nFrequency = std::llround(signal.dFrequency);
    cut.nBandwidth = BandwidthForSignal(signal.dHolding, m_scene.Rules().nSampleRate);
    cuts.push_back(cut);
  }
  if (!cuts.empty()) emit CutsWanted(cuts);
}

}  // namespace carvello
