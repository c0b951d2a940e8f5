// odb_MeshRows: converts the rows of a large mesh addition on two threads; internal.
//
// Reading a million short rows out of their nested sequences is bound by fetching them from
// memory, and two cores fetch them faster than one. For each piece the store asks for, the
// caller's thread converts the first half and a helper thread the second; then the caller goes
// on alone. The helper only reads the caller's rows, only while the caller waits for it, and
// lives as long as the object: one addition. Small additions start no helper. Owned by one
// thread.
#ifndef ODB_MESHROWS_H
#define ODB_MESHROWS_H

#include <condition_variable>
#include <cstdint>
#include <exception>
#include <functional>
#include <mutex>
#include <thread>

class odb_MeshRows {
 public:
  // Converts up to `rows` rows in all; starts the helper when that is many.
  explicit odb_MeshRows(int rows);
  ~odb_MeshRows();
  odb_MeshRows(const odb_MeshRows&) = delete;
  odb_MeshRows& operator=(const odb_MeshRows&) = delete;

  // Runs work(from, to) over the rows [first, first + n), in two halves side by side when they
  // are large enough. Each call returns -1, or the first row in its range that it refuses;
  // Run returns the first refused row of the whole range, or -1.
  int Run(int first, int n, const std::function<int(int from, int to)>& work);

 private:
  void Serve();

  std::mutex m_mutex;
  std::condition_variable m_changed;
  const std::function<int(int, int)>* m_work = nullptr;
  int m_from = 0, m_to = 0, m_result = -1;
  std::uint64_t m_posted = 0, m_served = 0;
  bool m_stop = false;
  std::exception_ptr m_failure;
  std::thread m_helper;
};

#endif
