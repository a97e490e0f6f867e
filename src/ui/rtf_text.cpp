#include "ui/rtf_text.h"

#include <QRegularExpression>
#include <QStringList>
#include <algorithm>
#include <array>
#include <cstdlib>
#include <string>
#include <vector>

namespace carvello {

namespace {

// What a group takes over from the one around it, and what ends with it.
struct SState {
  bool bSkipped = false;  // a table or another destination that is not part of the text
  bool bBold = false;
  std::size_t nColour = 0;
  int nUnicodeSkip = 1;  // characters that stand in for a Unicode one
};

class CRtfReader {
 public:
  explicit CRtfReader(std::string_view rtf) : m_rtf(rtf) {}

  QString Read() {
    while (m_at < m_rtf.size()) {
      const char c = m_rtf[m_at++];
      if (c == '{') {
        m_states.push_back(m_states.back());
      } else if (c == '}') {
        if (m_states.size() > 1) m_states.pop_back();
      } else if (c == '\\') {
        ReadControl();
      } else if (c != '\r' && c != '\n') {
        Add(QString::fromLatin1(&c, 1));
      }
    }
    EndParagraph();
    EndList();
    return m_html;
  }

 private:
  SState& State() { return m_states.back(); }

  void ReadControl() {
    if (m_at == m_rtf.size()) return;
    if (std::isalpha(static_cast<unsigned char>(m_rtf[m_at])) == 0) {
      ReadSymbol(m_rtf[m_at++]);
      return;
    }
    const std::size_t start = m_at;
    while (m_at < m_rtf.size() && std::isalpha(static_cast<unsigned char>(m_rtf[m_at])) != 0) ++m_at;
    const std::string_view word = m_rtf.substr(start, m_at - start);
    std::string digits;
    if (m_at < m_rtf.size() && m_rtf[m_at] == '-') digits += m_rtf[m_at++];
    while (m_at < m_rtf.size() && std::isdigit(static_cast<unsigned char>(m_rtf[m_at])) != 0) digits += m_rtf[m_at++];
    if (m_at < m_rtf.size() && m_rtf[m_at] == ' ') ++m_at;
    Apply(word, digits.empty() ? 1 : std::atoi(digits.c_str()));
  }

  void ReadSymbol(char symbol) {
    switch (symbol) {
      case '\'': {  // a character by its hexadecimal number
        const QByteArray digits(m_rtf.data() + m_at,
                                static_cast<qsizetype>(std::min<std::size_t>(2, m_rtf.size() - m_at)));
        m_at += static_cast<std::size_t>(digits.size());
        Add(FromCodePage(static_cast<unsigned char>(digits.toUInt(nullptr, 16))));
        break;
      }
      case '*':
        State().bSkipped = true;
        break;
      case '~':
        Add(QChar(QChar::Nbsp));
        break;
      case '\\':
      case '{':
      case '}':
        Add(QString(QLatin1Char(symbol)));
        break;
      default:
        break;
    }
  }

  void Apply(std::string_view word, int value) {
    constexpr std::array<std::string_view, 5> kNoText = {"fonttbl", "stylesheet", "info", "pict", "pntext"};
    if (word == "pntext") m_bListItem = true;
    if (word == "colortbl") {
      ReadColours();
    } else if (std::find(kNoText.begin(), kNoText.end(), word) != kNoText.end()) {
      State().bSkipped = true;
    } else if (word == "par") {
      EndParagraph();
    } else if (word == "b") {
      State().bBold = value != 0;
    } else if (word == "cf") {
      State().nColour = static_cast<std::size_t>(std::max(value, 0));
    } else if (word == "tab") {
      Add(QStringLiteral(" "));
    } else if (word == "uc") {
      State().nUnicodeSkip = value;
    } else if (word == "u") {
      Add(QChar(static_cast<char16_t>(value)));
      m_nSkip = State().nUnicodeSkip;
    }
  }

  // ";\red128\green128\blue128;…}": the first entry is the default colour, and empty.
  void ReadColours() {
    const std::size_t end = std::min(m_rtf.find('}', m_at), m_rtf.size());
    const QString table = QString::fromLatin1(m_rtf.data() + m_at, static_cast<qsizetype>(end - m_at));
    const QRegularExpression colour(QStringLiteral("\\\\red(\\d+)\\\\green(\\d+)\\\\blue(\\d+)"));
    for (const QString& entry : table.split(QLatin1Char(';'))) {
      const QRegularExpressionMatch match = colour.match(entry);
      m_colours << (match.hasMatch()
                        ? QStringLiteral("rgb(%1,%2,%3)").arg(match.captured(1), match.captured(2), match.captured(3))
                        : QString());
    }
    m_at = end;
  }

  static QString FromCodePage(unsigned char code) {
    // Where code page 1252 differs from Latin 1; 0 for the five codes that stand for nothing.
    constexpr std::array<char16_t, 32> kSpecial = {0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                                   0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0,      0x017D, 0,
                                                   0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                                   0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};
    return QChar(code >= 0x80 && code < 0xA0 ? kSpecial[code - 0x80U] : char16_t{code});
  }

  void Add(const QString& text) {
    if (State().bSkipped) return;
    if (m_nSkip > 0) {
      --m_nSkip;
      return;
    }
    // Characters of one look are gathered, so that a link is seen whole.
    if (m_run.isEmpty() || m_runState.bBold != State().bBold || m_runState.nColour != State().nColour) {
      EndRun();
      m_runState = State();
    }
    m_run += text;
  }

  void EndRun() {
    if (m_run.isEmpty()) return;
    static const QRegularExpression link(QStringLiteral("(https?://[^\\s<>\"]*[^\\s<>\".,;:!?)])"));
    QString html = m_run.toHtmlEscaped().replace(link, QStringLiteral("<a href=\"\\1\">\\1</a>"));
    if (m_runState.bBold) html = QStringLiteral("<b>%1</b>").arg(html);
    const QString colour = m_colours.value(static_cast<qsizetype>(m_runState.nColour));
    if (!colour.isEmpty()) html = QStringLiteral("<span style=\"color:%1\">%2</span>").arg(colour, html);
    m_paragraph += html;
    m_run.clear();
  }

  void EndParagraph() {
    EndRun();
    if (!m_paragraph.isEmpty()) {
      if (m_bListItem && !m_bInList) m_html += QLatin1String("<ul>");
      if (!m_bListItem) EndList();
      m_bInList = m_bListItem;
      m_html += (m_bListItem ? QStringLiteral("<li>%1</li>") : QStringLiteral("<p>%1</p>")).arg(m_paragraph);
    }
    m_paragraph.clear();
    m_bListItem = false;
  }

  void EndList() {
    if (m_bInList) m_html += QLatin1String("</ul>");
    m_bInList = false;
  }

  std::string_view m_rtf;
  std::size_t m_at = 0;
  std::vector<SState> m_states{SState{}};
  QStringList m_colours;
  int m_nSkip = 0;  // characters still to be passed over
  bool m_bListItem = false;
  bool m_bInList = false;
  QString m_run;
  SState m_runState;
  QString m_paragraph;
  QString m_html;
};

}  // namespace

QString RtfToHtml(std::string_view rtf) {
  return CRtfReader(rtf).Read();
}

}  // namespace carvello
