// thr_GlobalSingletonBase, thr_GlobalSingleton: one object of a class per process, made on first
// use.
//
// A class becomes a singleton by deriving from thr_GlobalSingleton<Class> (or directly from
// thr_GlobalSingletonBase<Class>). Its constructor registers the object as the instance, and
// constructing a second one while the first lives reports the assertion "instance == 0" and
// leaves the first registered; destroying an object that is not the registered one reports
// "instance == thr_GlobalSingletonBase<Class>::Instance()".
//
// thr_GlobalSingleton<Class>::Instance() creates the instance on first call with the double
// test: read the published pointer, and only when it is null take the creation lock, test again
// and construct. Registration happens in the base constructor, before the derived part is built,
// so the object is published for the fast path in a second pointer only once its constructor has
// returned; both pointers are atomic (released on store, acquired on load), so a thread that
// sees the published pointer also sees the finished object. Finalize() (or Destroy()) deletes the
// instance under the same lock; the next Instance() makes a fresh one.
//
// Ownership: the singleton owns the instance made by Instance() and deletes it in Finalize; an
// object constructed by hand is registered (so that a second one is caught) but stays its
// creator's to destroy. Cost: after
// creation, Instance() is one atomic load. Threads: creation and destruction through Instance()
// and Finalize() are serialised; constructing by hand is not, the instance's own operations are
// not, and Finalize must not race with threads still using the instance.
#ifndef THR_GLOBALSINGLETON_H
#define THR_GLOBALSINGLETON_H

#include <atomic>
#include <mutex>
#include <type_traits>

#include "cow_Assert.h"
#include "odb_Export.h"

template <class Class>
class thr_GlobalSingleton;

template <class Class>
class QTVODB_EXPORT thr_GlobalSingletonBase {
 public:
  thr_GlobalSingletonBase(const thr_GlobalSingletonBase&) = delete;
  thr_GlobalSingletonBase& operator=(const thr_GlobalSingletonBase&) = delete;

  // The registered instance, or null; never creates one. While another thread is still
  // constructing the instance this may point at an unfinished object: use it for checks, and
  // thr_GlobalSingleton<Class>::Instance() to use the instance.
  static Class* Instance() {
    return static_cast<Class*>(s_registered.load(std::memory_order_acquire));
  }

  // Deletes the instance that thr_GlobalSingleton<Class>::Instance() made, if any, under the
  // creation lock.
  static void Finalize() {
    std::lock_guard<std::mutex> guard(s_lock);
    if (thr_GlobalSingletonBase* made = s_published.load(std::memory_order_acquire)) {
      delete static_cast<Class*>(made);
    }
  }

  // Site numbers of the singleton's assertions, fixed so that reports keep their identity.
  static constexpr int kSecondInstanceSite = 62;
  static constexpr int kNotInstanceSite = 71;
  static constexpr int kCreatedSite = 93;

 protected:
  // Registers this object as the instance; reports "instance == 0" if there is one already.
  thr_GlobalSingletonBase() {
    thr_GlobalSingletonBase* expected = nullptr;
    if (!s_registered.compare_exchange_strong(expected, this, std::memory_order_acq_rel)) {
      cow_AssertFailed("instance == 0", "include/thr_GlobalSingleton", kSecondInstanceSite);
    }
  }

  // Unregisters this object; reports the assertion when it is not the registered instance.
  ~thr_GlobalSingletonBase() {
    thr_GlobalSingletonBase* expected = this;
    if (!s_registered.compare_exchange_strong(expected, nullptr, std::memory_order_acq_rel)) {
      cow_AssertFailed("instance == thr_GlobalSingletonBase<Class>::Instance()",
                       "include/thr_GlobalSingleton", kNotInstanceSite);
    }
    expected = this;
    s_published.compare_exchange_strong(expected, nullptr, std::memory_order_acq_rel);
  }

 private:
  friend class thr_GlobalSingleton<Class>;

  // Base pointers, because the derived object is not yet a Class while the base constructor
  // runs; s_published is only ever set to a finished object.
  inline static std::atomic<thr_GlobalSingletonBase*> s_registered{nullptr};
  inline static std::atomic<thr_GlobalSingletonBase*> s_published{nullptr};
  // Constant-initialised, so it exists before any thread can ask for the instance.
  inline static std::mutex s_lock;
};

template <class Class>
class QTVODB_EXPORT thr_GlobalSingleton : public thr_GlobalSingletonBase<Class> {
  using Base = thr_GlobalSingletonBase<Class>;

 public:
  // The instance, created by the first caller; racing first callers all get the same, finished
  // object. If an object constructed by hand is registered, the one made here is not, and both
  // its construction and this call report their assertions.
  static Class& Instance() {
    static_assert(std::is_base_of<Base, Class>::value,
                  "a global singleton class derives from thr_GlobalSingletonBase<Class>");
    Base* published = Base::s_published.load(std::memory_order_acquire);
    if (!published) {
      std::lock_guard<std::mutex> guard(Base::s_lock);
      published = Base::s_published.load(std::memory_order_acquire);
      if (!published) {
        published = new Class();
        Base::s_published.store(published, std::memory_order_release);
      }
    }
    Class* instance = static_cast<Class*>(published);
    cow_Check(instance == Base::Instance(),
              "instance == thr_GlobalSingletonBase<Class>::Instance()",
              "include/thr_GlobalSingleton", Base::kCreatedSite);
    return *instance;
  }

  // Deletes the instance, if any.
  static void Destroy() { Base::Finalize(); }

 protected:
  thr_GlobalSingleton() = default;
  ~thr_GlobalSingleton() = default;
};

#endif
