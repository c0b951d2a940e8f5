#include <mutex>

#include "thr_GlobalSingleton.h"

// The lock of one singleton class.
class thr_Mutex {
 public:
  std::mutex lock;
};

namespace {

// Constant-initialised, so it exists before any thread can ask for a singleton.
std::mutex g_globalLock;

}  // namespace

thr_Mutex* thr_GlobalLock::CreateMutex(thr_Mutex** mutex) {
  std::lock_guard<std::mutex> guard(g_globalLock);
  if (!*mutex) *mutex = new thr_Mutex;
  return *mutex;
}

void thr_GlobalLock::DestroyMutex(thr_Mutex** mutex) {
  std::lock_guard<std::mutex> guard(g_globalLock);
  delete *mutex;
  *mutex = nullptr;
}

void thr_GlobalLock::Lock(thr_Mutex* mutex) {
  mutex->lock.lock();
}

void thr_GlobalLock::Unlock(thr_Mutex* mutex) {
  mutex->lock.unlock();
}
