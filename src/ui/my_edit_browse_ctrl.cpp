#include "ui/my_edit_browse_ctrl.h"

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QMimeData>
#include <QPainter>
#include <QStyleOptionFrame>
#include <QToolButton>
#include <QToolTip>
#include <QUrl>
#include <algorithm>
#include <cmath>
#include <utility>

#include "support/platform.h"

namespace carvello {

namespace {

constexpr QColor kBackground(255, 250, 241);
constexpr double kReadableContrast = 4.5;  // W3C, Web Content Accessibility Guidelines 2.1, success criterion 1.4.3

// Relative luminance, as the same guidelines define it.
double Luminance(const QColor& colour) {
  const auto linear = [](double channel) {
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

double Contrast(const QColor& a, const QColor& b) {
  const auto [darker, lighter] = std::minmax({Luminance(a), Luminance(b)});
  return (lighter + 0.05) / (darker + 0.05);
}

// "*.WAV" as "*.[wW][aA][vV]".
QString PatternForAnyCase(const QString& pattern) {
  QString any;
  for (const QChar c : pattern) {
    if (c.isLetter()) {
      any += QLatin1Char('[') + c.toLower() + c.toUpper() + QLatin1Char(']');
    } else {
      any += c;
    }
  }
  return any;
}

QString AskWithDialog(QWidget* parent, const CMyMFCEditBrowseCtrl::SBrowse& browse, const QString& path) {
  if (browse.bFolder) return QFileDialog::getExistingDirectory(parent, browse.title, path);
  // The label of a filter names its patterns already.
  return QFileDialog::getOpenFileName(parent, browse.title, path, browse.nameFilters.join(QLatin1String(";;")), nullptr,
                                      QFileDialog::HideNameFilterDetails);
}

}  // namespace

QStringList NameFilters(const QString& filterText, bool bCaseMatters) {
  const QStringList parts = filterText.split(QLatin1Char('|'));
  QStringList filters;
  for (qsizetype i = 0; i + 1 < parts.size() && !parts[i].isEmpty(); i += 2) {
    QStringList patterns = parts[i + 1].split(QLatin1Char(';'), Qt::SkipEmptyParts);
    if (bCaseMatters) std::transform(patterns.begin(), patterns.end(), patterns.begin(), PatternForAnyCase);
    filters << QStringLiteral("%1 (%2)").arg(parts[i], patterns.join(QLatin1Char(' ')));
  }
  return filters;
}

QColor ReadableTextColour(const QColor& background, const QColor& wanted) {
  if (Contrast(background, wanted) >= kReadableContrast) return wanted;
  return Contrast(background, Qt::black) >= Contrast(background, Qt::white) ? Qt::black : Qt::white;
}

CMyMFCEditBrowseCtrl::CMyMFCEditBrowseCtrl(QWidget* parent)
    : QLineEdit(parent), m_pButton(new QToolButton(this)), m_chooser(AskWithDialog) {
  m_pButton->setAutoRaise(true);
  m_pButton->setCursor(Qt::ArrowCursor);
  m_pButton->setFocusPolicy(Qt::TabFocus);
  m_pButton->hide();
  ApplyColours();
  connect(m_pButton, &QToolButton::clicked, this, &CMyMFCEditBrowseCtrl::Browse);
  connect(this, &QLineEdit::textChanged, this, &CMyMFCEditBrowseCtrl::PathChanged);
}

void CMyMFCEditBrowseCtrl::SetFileBrowse(const QString& filterText) {
  const bool bCaseMatters = !platform::FileNamesEqual("a", "A");
  ShowButton({false, tr("Open"), NameFilters(filterText, bCaseMatters)}, QStyle::SP_DialogOpenButton,
             tr("Browse for a file"));
}

void CMyMFCEditBrowseCtrl::SetFolderBrowse(const QString& title) {
  ShowButton({true, title, {}}, QStyle::SP_DirOpenIcon, tr("Browse for a folder"));
}

void CMyMFCEditBrowseCtrl::ShowButton(SBrowse browse, QStyle::StandardPixmap icon, const QString& name) {
  m_browse = std::move(browse);
  m_pButton->setObjectName(objectName() + QLatin1String("_browse"));
  m_pButton->setIcon(style()->standardIcon(icon));
  m_pButton->setAccessibleName(name);
  m_pButton->setToolTip(name);
  m_pButton->show();
  setTabOrder(this, m_pButton);
  PlaceButton();
}

void CMyMFCEditBrowseCtrl::SetChooser(PathChooser chooser) {
  m_chooser = std::move(chooser);
}

void CMyMFCEditBrowseCtrl::SetPath(const QString& path) {
  setText(path);
}

void CMyMFCEditBrowseCtrl::Browse() {
  const QString chosen = m_chooser(window(), m_browse, text());
  if (!chosen.isEmpty()) SetPath(QDir::toNativeSeparators(chosen));
}

bool CMyMFCEditBrowseCtrl::event(QEvent* event) {
  // A path that is shown in part is told whole, in place of what the field is for.
  if (event->type() == QEvent::ToolTip && IsElided()) {
    QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), text(), this);
    return true;
  }
  return QLineEdit::event(event);
}

void CMyMFCEditBrowseCtrl::changeEvent(QEvent* event) {
  QLineEdit::changeEvent(event);
  if (event->type() == QEvent::PaletteChange && !m_bApplyingColours) ApplyColours();
}

void CMyMFCEditBrowseCtrl::resizeEvent(QResizeEvent* event) {
  QLineEdit::resizeEvent(event);
  PlaceButton();
}

void CMyMFCEditBrowseCtrl::PlaceButton() {
  if (m_pButton->isHidden()) return;
  const int frame = style()->pixelMetric(QStyle::PM_DefaultFrameWidth, nullptr, this);
  const int side = std::max(0, height() - 2 * frame);
  m_pButton->setGeometry(QStyle::visualRect(layoutDirection(), rect(), {width() - frame - side, frame, side, side}));
  setTextMargins(0, 0, side, 0);
}

QRect CMyMFCEditBrowseCtrl::TextArea() const {
  QStyleOptionFrame panel;
  initStyleOption(&panel);
  // QLineEdit itself keeps two pixels free at either end.
  return style()
      ->subElementRect(QStyle::SE_LineEditContents, &panel, this)
      .marginsRemoved(textMargins())
      .adjusted(2, 0, -2, 0);
}

bool CMyMFCEditBrowseCtrl::IsElided() const {
  return fontMetrics().horizontalAdvance(text()) > TextArea().width();
}

void CMyMFCEditBrowseCtrl::paintEvent(QPaintEvent* event) {
  if (hasFocus() || !IsElided()) {
    QLineEdit::paintEvent(event);
    return;
  }
  QStyleOptionFrame panel;
  initStyleOption(&panel);
  QPainter painter(this);
  style()->drawPrimitive(QStyle::PE_PanelLineEdit, &panel, &painter, this);
  const QRect area = TextArea();
  painter.setPen(palette().color(QPalette::Text));
  painter.drawText(area, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine,
                   fontMetrics().elidedText(text(), Qt::ElideMiddle, area.width()));
}

void CMyMFCEditBrowseCtrl::ApplyColours() {
  // Like the system's edit fields, one that cannot be used has the desktop's colours for that.
  m_bApplyingColours = true;
  QPalette colours = palette();
  for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive}) {
    const QColor text = ReadableTextColour(kBackground, QToolTip::palette().color(group, QPalette::ToolTipText));
    QColor placeholder = text;
    placeholder.setAlphaF(0.6F);
    colours.setColor(group, QPalette::Base, kBackground);
    colours.setColor(group, QPalette::Text, text);
    colours.setColor(group, QPalette::PlaceholderText, placeholder);
  }
  setPalette(colours);
  m_bApplyingColours = false;
}

// The path of a dropped file or folder that belongs into this field: of a file, or of a folder or a file's folder.
QString CMyMFCEditBrowseCtrl::DroppedPath(const QDropEvent& event) const {
  const QList<QUrl> urls = event.mimeData()->urls();
  if (urls.isEmpty() || !urls.first().isLocalFile()) return {};
  const QFileInfo dropped(urls.first().toLocalFile());
  if (dropped.isDir() != m_browse.bFolder) return m_browse.bFolder ? dropped.absolutePath() : QString();
  return dropped.absoluteFilePath();
}

void CMyMFCEditBrowseCtrl::dragEnterEvent(QDragEnterEvent* event) {
  if (!event->mimeData()->hasUrls()) {
    QLineEdit::dragEnterEvent(event);
  } else if (DroppedPath(*event).isEmpty()) {
    event->ignore();
  } else {
    event->acceptProposedAction();
  }
}

void CMyMFCEditBrowseCtrl::dragMoveEvent(QDragMoveEvent* event) {
  if (event->mimeData()->hasUrls()) {
    event->acceptProposedAction();
  } else {
    QLineEdit::dragMoveEvent(event);
  }
}

void CMyMFCEditBrowseCtrl::dropEvent(QDropEvent* event) {
  if (!event->mimeData()->hasUrls()) {
    QLineEdit::dropEvent(event);
    return;
  }
  const QString path = DroppedPath(*event);
  if (path.isEmpty()) return;
  SetPath(QDir::toNativeSeparators(path));
  event->acceptProposedAction();
}

}  // namespace carvello
