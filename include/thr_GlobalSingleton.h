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
// test: read the published pointer, and only when it is null make the class's creation lock
// (CreateSingletonLocks, under the process-wide thr_GlobalLock), take it (LockBase), test again
// and construct. Registration happens in the base constructor, before the derived part is built,
// so the object is published for the fast path in a second pointer only once its constructor has
// returned; both pointers are read with acquire and written with release ordering, so a thread
// that sees the published pointer also sees the finished object. Finalize() (or Destroy())
// deletes the instance under the same lock and then lets the lock go; the next Instance() makes a
// fresh instance and a fresh lock.
//
// Ownership: the singleton owns the instance made by Instance() and deletes it in Finalize; an
// object constructed by hand is registered (so that a second one is caught) but stays its
// creator's to destroy. Cost: after creation, Instance() is one atomic load. Threads: creation and
// destruction through Instance() and Finalize() are serialised; constructing by hand is not, the
// instance's own operations are not, and Finalize must not race with threads still using the
// instance. The locks are the library's (thr_GlobalLock), and the pointers are read and written
// with the compiler's atomic built-ins, so that this header needs no threading headers.
#ifndef THR_GLOBALSINGLETON_H
#define THR_GLOBALSINGLETON_H

#include <type_traits>

#include "cow_Assert.h"
#include "odb_Export.h"

// A lock of the library, one per singleton class; opaque outside it.
class thr_Mutex;

// The process-wide lock under which singleton classes make and release their own locks, and the
// operations on those locks. Any thread.
class QTVODB_EXPORT thr_GlobalLock {
 public:
  // Under the process-wide lock: makes *mutex when it is null (a racing caller finds the one the
  // first made), and returns it.
  static thr_Mutex* CreateMutex(thr_Mutex** mutex);
  // Under the process-wide lock: deletes *mutex, which no thread may hold, and nulls it.
  static void DestroyMutex(thr_Mutex** mutex);
  static void Lock(thr_Mutex* mutex);
  static void Unlock(thr_Mutex* mutex);
};

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
  static Class* Instance() { return static_cast<Class*>(Load(&s_registered)); }

  // Deletes the instance that thr_GlobalSingleton<Class>::Instance() made, if any, under the
  // creation lock, then releases that lock.
  static void Finalize() {
    if (!Load(&s_published)) return;
    {
      Held held;
      if (thr_GlobalSingletonBase* made = Load(&s_published)) delete static_cast<Class*>(made);
    }
    thr_GlobalLock::DestroyMutex(&s_lock);
  }

  // Makes the class's creation lock if there is none yet.
  static void CreateSingletonLocks() { thr_GlobalLock::CreateMutex(&s_lock); }
  // Takes and releases the creation lock; CreateSingletonLocks first.
  static void LockBase() { thr_GlobalLock::Lock(s_lock); }
  static void UnlockBase() { thr_GlobalLock::Unlock(s_lock); }

  // Site numbers of the singleton's assertions, fixed so that reports keep their identity.
  static constexpr int kSecondInstanceSite = 62;
  static constexpr int kNotInstanceSite = 71;
  static constexpr int kCreatedSite = 93;

 protected:
  // Registers this object as the instance; reports "instance == 0" if there is one already.
  thr_GlobalSingletonBase() {
    if (!Exchange(&s_registered, nullptr, this)) {
      cow_AssertFailed("instance == 0", "include/thr_GlobalSingleton", kSecondInstanceSite);
    }
  }

  // Unregisters this object; reports the assertion when it is not the registered instance.
  ~thr_GlobalSingletonBase() {
    if (!Exchange(&s_registered, this, nullptr)) {
      cow_AssertFailed("instance == thr_GlobalSingletonBase<Class>::Instance()",
                       "include/thr_GlobalSingleton", kNotInstanceSite);
    }
    Exchange(&s_published, this, nullptr);
  }

 private:
  friend class thr_GlobalSingleton<Class>;

  // The creation lock, made if need be and held for a scope (released by an exception too).
  struct Held {
    Held() {
      CreateSingletonLocks();
      LockBase();
    }
    ~Held() { UnlockBase(); }
    Held(const Held&) = delete;
    Held& operator=(const Held&) = delete;
  };

  static thr_GlobalSingletonBase* Load(thr_GlobalSingletonBase* const* slot) {
    return __atomic_load_n(slot, __ATOMIC_ACQUIRE);
  }
  static void Publish(thr_GlobalSingletonBase** slot, thr_GlobalSingletonBase* value) {
    (void)__atomic_exchange_n(slot, value, __ATOMIC_RELEASE);
  }
  // Sets *slot to `to` if it holds `from`; false, changing nothing, otherwise.
  static bool Exchange(thr_GlobalSingletonBase** slot, thr_GlobalSingletonBase* from,
                       thr_GlobalSingletonBase* to) {
    return __atomic_compare_exchange_n(slot, &from, to, false, __ATOMIC_ACQ_REL, __ATOMIC_ACQUIRE);
  }

  // Base pointers, because the derived object is not yet a Class while the base constructor
  // runs; s_published is only ever set to a finished object.
  inline static thr_GlobalSingletonBase* s_registered = nullptr;
  inline static thr_GlobalSingletonBase* s_published = nullptr;
  // Made on first use under the process-wide lock (CreateSingletonLocks).
  inline static thr_Mutex* s_lock = nullptr;
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
    Base* published = Base::Load(&Base::s_published);
    if (!published) {
      typename Base::Held held;
      published = Base::Load(&Base::s_published);
      if (!published) {
        published = new Class();
        Base::Publish(&Base::s_published, published);
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
