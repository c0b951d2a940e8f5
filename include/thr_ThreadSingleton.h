// thr_ThreadSingleton: one object of a class per thread.
//
// Instance() gives the calling thread's own object, default-constructed on the thread's first
// call and destroyed when the thread ends. Objects of different threads are independent; nothing
// is shared, so nothing is locked. Cost after the first call: one thread-local access.
#ifndef THR_THREADSINGLETON_H
#define THR_THREADSINGLETON_H

#include "odb_Export.h"

template <class T>
class QTVODB_EXPORT thr_ThreadSingleton {
 public:
  static T& Instance() {
    thread_local T instance;
    return instance;
  }
};

#endif
