#include "odb_MeshRows.h"

namespace {

// Below these, a helper costs more in hand-overs than it saves.
const int kMinRows = 65536;
const int kMinPiece = 2048;

}  // namespace

odb_MeshRows::odb_MeshRows(int rows) {
  if (rows >= kMinRows) m_helper = std::thread([this] { Serve(); });
}

odb_MeshRows::~odb_MeshRows() {
  if (!m_helper.joinable()) return;
  {
    std::lock_guard<std::mutex> lock(m_mutex);
    m_stop = true;
  }
  m_changed.notify_all();
  m_helper.join();
}

void odb_MeshRows::Serve() {
  std::unique_lock<std::mutex> lock(m_mutex);
  for (;;) {
    m_changed.wait(lock, [this] { return m_stop || m_served != m_posted; });
    if (m_stop) return;
    const std::function<int(int, int)>& work = *m_work;
    int from = m_from, to = m_to, result = -1;
    std::exception_ptr failure;
    lock.unlock();
    try {
      result = work(from, to);
    } catch (...) {
      failure = std::current_exception();
    }
    lock.lock();
    m_result = result;
    m_failure = failure;
    m_served = m_posted;
    m_changed.notify_all();
  }
}

int odb_MeshRows::Run(int first, int n, const std::function<int(int, int)>& work) {
  if (!m_helper.joinable() || n < kMinPiece) return work(first, first + n);
  int middle = first + n / 2;
  {
    std::lock_guard<std::mutex> lock(m_mutex);
    m_work = &work;
    m_from = middle;
    m_to = first + n;
    ++m_posted;
  }
  m_changed.notify_all();
  int mine = -1;
  std::exception_ptr failure;
  try {
    mine = work(first, middle);
  } catch (...) {
    failure = std::current_exception();
  }
  std::unique_lock<std::mutex> lock(m_mutex);
  m_changed.wait(lock, [this] { return m_served == m_posted; });
  if (failure) std::rethrow_exception(failure);
  if (m_failure) std::rethrow_exception(m_failure);
  return mine >= 0 ? mine : m_result;
}
