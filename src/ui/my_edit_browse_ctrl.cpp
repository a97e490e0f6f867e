#include "ui/my_edit_browse_ctrl.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QHelpEvent>
#include <QPainter>
#include <QStyleOptionFrame>
#include <QToolButton>
#include <QToolTip>
#include <QUrl>
#include <algorithm>
#include <utility>

#include "support/platform.h"
#include "ui/plain_tool_tip.h"
#include "ui/readable_colours.h"

namespace carvello {

namespace {

constexpr QColor kBackground(255, 250, 241);
constexpr double kDark = 0.18;             // luminance of a middle grey: fields that are darker belong to a dark theme
constexpr double kReadableContrast = 4.5;  // W3C, Web Content Accessibility Guidelines 2.1, success criterion 1.4.3

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
  return ContrastOf(background, wanted) >= kReadableContrast ? wanted : ReadableOn(background);
}

QString CMyMFCEditBrowseCtrl::AskWithDialog(QWidget* parent, const SBrowse& browse, const QString& path) {
  if (browse.bFolder) return QFileDialog::getExistingDirectory(parent, browse.title, path);
  // The label of a filter names its patterns already.
  return QFileDialog::getOpenFileName(parent, browse.title, path, browse.nameFilters.join(QLatin1String(";;")), nullptr,
                                      QFileDialog::HideNameFilterDetails);
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

QString CMyMFCEditBrowseCtrl::Path() const {
  // Terminals and file managers copy paths in these forms.
  const QString trimmed = text().trimmed();
  const bool quoted =
      trimmed.size() > 2 && (trimmed.startsWith('"') || trimmed.startsWith('\'')) && trimmed.endsWith(trimmed.front());
  if (quoted) return trimmed.mid(1, trimmed.size() - 2);
  if (!trimmed.startsWith(QLatin1String("file://"), Qt::CaseInsensitive)) return text();
  const QString path = QUrl(trimmed).toLocalFile();
  return path.isEmpty() ? text() : QDir::toNativeSeparators(path);
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
    ShowPlainToolTip(static_cast<QHelpEvent*>(event)->globalPos(), text(), this);
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
  const QPalette theme = parentWidget() == nullptr ? QApplication::palette(this) : parentWidget()->palette();
  QPalette colours = palette();
  for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive}) {
    const QColor field = theme.color(group, QPalette::Base);
    const bool bDark = LuminanceOf(field) < kDark;
    const QColor background = bDark ? field : kBackground;
    const QColor wanted =
        bDark ? theme.color(group, QPalette::Text) : QToolTip::palette().color(group, QPalette::ToolTipText);
    const QColor text = ReadableTextColour(background, wanted);
    QColor placeholder = text;
    placeholder.setAlphaF(0.6F);
    colours.setColor(group, QPalette::Base, background);
    colours.setColor(group, QPalette::Text, text);
    colours.setColor(group, QPalette::PlaceholderText, placeholder);
  }
  setPalette(colours);
  m_bApplyingColours = false;
}

}  // namespace carvello
