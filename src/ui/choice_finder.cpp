#include "ui/choice_finder.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QElapsedTimer>
#include <QKeyEvent>

namespace carvello {

namespace {

constexpr qint64 kPauseMilliseconds = 1500;  // after which typing begins anew

QString Tidied(const QString& text) {
  return text.simplified().remove(' ').toLower();
}

// Of one list, as the event filter of it and of what it opens.
class CChoiceFinder : public QObject {
 public:
  explicit CChoiceFinder(QComboBox* pList) : QObject(pList), m_pList(pList) {
    pList->installEventFilter(this);
    pList->view()->installEventFilter(this);
  }

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() != QEvent::KeyPress) return false;
    const auto& key = *static_cast<QKeyEvent*>(event);
    const QString text = key.text();
    if (text.isEmpty() || !text[0].isPrint() || (key.modifiers() & (Qt::ControlModifier | Qt::AltModifier)) != 0) {
      m_typed.clear();
      return false;
    }
    if (m_pause.isValid() && m_pause.elapsed() > kPauseMilliseconds) m_typed.clear();
    // A blank at the beginning opens the list, or takes what is marked in it.
    if (m_typed.isEmpty() && text == " ") return false;
    m_pause.start();
    Type(text, watched != m_pList);
    return true;
  }

 private:
  void Type(const QString& text, bool inOpenList) {
    QStringList choices;
    for (int i = 0; i < m_pList->count(); ++i) choices << m_pList->itemText(i);
    const int present = inOpenList ? m_pList->view()->currentIndex().row() : m_pList->currentIndex();
    int found = FindChoice(choices, m_typed + text);
    if (found >= 0) {
      m_typed += text;
    } else {
      // It begins anew, behind the present one: a letter that is typed again and again goes through all that have it.
      m_typed = text;
      for (int i = 1; i <= choices.size() && found < 0; ++i) {
        const int next = (present + i) % static_cast<int>(choices.size());
        if (FindChoice({choices[next]}, text) == 0) found = next;
      }
    }
    if (found < 0) return;
    if (inOpenList) {
      m_pList->view()->setCurrentIndex(
          m_pList->model()->index(found, m_pList->modelColumn(), m_pList->rootModelIndex()));
    } else if (found != present) {
      m_pList->setCurrentIndex(found);
      emit m_pList->activated(found);
    }
  }

  QComboBox* m_pList;
  QString m_typed;
  QElapsedTimer m_pause;
};

}  // namespace

int FindChoice(const QStringList& choices, const QString& typed) {
  const QString wanted = Tidied(typed);
  if (wanted.isEmpty()) return -1;
  int byWord = -1;
  int byBeginning = -1;
  for (int i = 0; i < choices.size(); ++i) {
    const QString choice = Tidied(choices[i]);
    if (choice == wanted) return i;
    if (byWord < 0 && Tidied(choices[i].simplified().section(' ', 0, 0)) == wanted) byWord = i;
    if (byBeginning < 0 && choice.startsWith(wanted)) byBeginning = i;
  }
  return byWord >= 0 ? byWord : byBeginning;
}

void MakeChoicesFindable(QWidget& window) {
  for (QComboBox* pList : window.findChildren<QComboBox*>()) {
    if (!pList->isEditable()) new CChoiceFinder(pList);
  }
}

}  // namespace carvello
