#include "ui/list_sums.h"

#include <QCoreApplication>
#include <QLocale>
#include <algorithm>

#include "support/text.h"
#include "ui/entry_table.h"

namespace carvello {

namespace {

QString Text(const char* text) {
  return QCoreApplication::translate("ListSums", text);
}

// How much would be left.
std::int64_t Left(const SRoom& room) {
  return *room.nFree - room.nWanted;
}

}  // namespace

SToneText ListSumsText(const SListSums& sums) {
  if (sums.nEntries == 0) return {};
  const QString entries = QString::number(sums.nEntries);
  const QString hours = QString::number(sums.dSeconds / 3600.0, 'f', 1);
  const QString bytes = BytesText(sums.nBytes);
  const auto told = [](const QString& text, ETone tone) { return SToneText{text.toStdString(), tone}; };
  const SRoom* pTightest = nullptr;
  for (const SRoom& room : sums.rooms) {
    if (room.nFree && (pTightest == nullptr || Left(room) < Left(*pTightest))) pTightest = &room;
  }
  if (pTightest == nullptr && sums.rooms.empty()) {
    return told(Text(QT_TRANSLATE_NOOP("ListSums", "Entries: %1, hours: %2, expected: %3")).arg(entries, hours, bytes),
                ETone::Plain);
  }
  if (pTightest == nullptr) {
    return told(Text(QT_TRANSLATE_NOOP("ListSums", "Entries: %1, hours: %2, expected: %3, free: not known"))
                    .arg(entries, hours, bytes),
                ETone::Plain);
  }
  const QString free = BytesText(*pTightest->nFree);
  const QString folder = QString::fromStdString(Printable(pTightest->strFolder));
  if (!pTightest->Fits()) {
    return told(
        Text(QT_TRANSLATE_NOOP("ListSums", "Does not fit: entries: %1, hours: %2, expected: %3, free: %4 in %5"))
            .arg(entries, hours, bytes, free, folder),
        ETone::Bad);
  }
  return told(Text(QT_TRANSLATE_NOOP("ListSums", "Entries: %1, hours: %2, expected: %3, free: %4"))
                  .arg(entries, hours, bytes, free),
              ETone::Plain);
}

}  // namespace carvello
