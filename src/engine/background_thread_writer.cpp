#include "engine/background_thread_writer.h"

#include <algorithm>
#include <utility>

#include "engine/side_by_side.h"

namespace carvello {

namespace {

// Looks at the clock in one interval of saving.
constexpr int kLooksPerInterval = 4;

}  // namespace

CBackgroundThreadWriter::CBackgroundThreadWriter(std::condition_variable& blockDone, std::size_t entries,
                                                 std::size_t files)
    : m_blockDone(blockDone), m_nFilesAtATime(files), m_pCloseRequest(TakeRequest(request::kCloseOutput)) {
  m_given.reserve(entries);
  m_entries.reserve(entries);
  m_due.reserve(entries);
  SetSaveInterval(kSaveInterval);
}

void CBackgroundThreadWriter::SetSaveInterval(std::chrono::milliseconds interval) {
  SetWakeInterval(std::max(interval / kLooksPerInterval, std::chrono::milliseconds(1)));
}

void CBackgroundThreadWriter::GiveEntry(CEntryWriter& entry) {
  RequestPtr request = TakeRequest(request::kStartEntry);
  request->pWriter = &entry;
  m_given.push_back(&entry);
  Post(std::move(request));
}

void CBackgroundThreadWriter::GiveBlock(RequestPtr request) noexcept {
  ++m_nBlocksGiven;
  Post(std::move(request));
}

void CBackgroundThreadWriter::PostClose() noexcept {
  if (m_pCloseRequest) Post(std::move(m_pCloseRequest));
}

bool CBackgroundThreadWriter::IsFinished() const noexcept {
  return std::all_of(m_given.begin(), m_given.end(), [](const CEntryWriter* entry) { return entry->IsFinished(); });
}

void CBackgroundThreadWriter::HandleRequest(CBackgroundRequest& request, std::uint32_t /*remaining*/) {
  switch (request.nCode) {
    case request::kStartEntry:
      if (m_bBeginNoMore && !m_entries.empty()) break;
      m_entries.push_back(request.pWriter);  // there is room for all
      request.pWriter->Start();
      break;
    case request::kDataBlock:
      ProcessBlock(request);
      request.block.reset();
      request.pSpectrum.reset();
      ++m_nBlocksDone;
      m_blockDone.notify_one();
      break;
    case request::kCloseOutput:
      SideBySide(m_entries.size(), m_nFilesAtATime, [this](std::size_t i) { m_entries[i]->Close(); });
      break;
    case request::kInputSkipped:
      for (CEntryWriter* entry : m_entries) entry->InputSkipped(request.llParam1);
      break;
    default:
      break;
  }
}

void CBackgroundThreadWriter::ProcessBlock(const CBackgroundRequest& request) noexcept {
  const SInputBlock block{.pSamples = request.block.get(),
                          .nCount = request.nParam2,
                          .llPosition = request.llParam1,
                          .bStretchEnds = request.nParam1 != 0,
                          .pSpectrum = request.pSpectrum.get()};
  for (CEntryWriter* entry : m_entries) entry->Process(block, m_work);
  SaveWhatIsDue();
}

void CBackgroundThreadWriter::SaveWhatIsDue() noexcept {
  const auto now = COutputBuffer::Clock::now();
  m_due.clear();
  for (CEntryWriter* entry : m_entries) {
    if (entry->IsSaveDue(now)) m_due.push_back(entry);
  }
  SideBySide(m_due.size(), m_nFilesAtATime, [this](std::size_t i) { m_due[i]->Save(); });
}

// Nothing came for a while: what waits here goes into the files all the same.
void CBackgroundThreadWriter::OnWakeTimeout() noexcept {
  SaveWhatIsDue();
}

}  // namespace carvello
