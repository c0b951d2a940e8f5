// What every part of the Python module shares: the database context that each bound object
// carries, the two ways of calling into the library (briefly, with the GIL held; at length, with
// the GIL released), the conversion of enumerations and numpy arrays, and the named mapping that
// repositories are shown as.
//
// Threads. The library serves one thread at a time per database, and its registry of open
// databases one thread at a time overall. Each database therefore has a context with its own
// (recursive) mutex, shared by every object reached from it and by every array that views its
// memory; the registry has one global mutex. Every call into the library holds the database's
// mutex. Long calls (reads and writes of arrays, saves, opens) release the GIL first and take
// the mutex after. No thread ever waits for a database's mutex while it holds the GIL: a short
// call, or a handle dropped, takes the mutex at once when it is free and lets the GIL go while
// it waits otherwise. So the holder of a mutex may always take the GIL, nothing deadlocks, and
// other Python threads run while one waits for a file another thread is reading. Threads that
// read different files run in parallel. Code under a mutex never runs Python (not even makes a
// Python object, whose finalizers could run Python), so that it never needs the GIL there.
#ifndef QTVODB_CORE_H
#define QTVODB_CORE_H

#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "odb_API.h"

namespace py = pybind11;

namespace qtvodb {

// The mutex of one database file, shared by every object reached from a database of that file
// (a read-only and a writable database of one file share it too) and by every array that views
// the library's memory.
struct Ctx {
  std::string path;  // absolute
  std::recursive_mutex mutex;
  // How many Database objects hold each registry database of this file open: opening a file
  // this process has open gives the registry's same database, which is closed when the last
  // of them is closed, so that independent openers (threads, tasks) do not close it under each
  // other. Under the mutex.
  std::map<odb_Odb*, int> opens;
};
using CtxPtr = std::shared_ptr<Ctx>;

// Takes the file's mutex: at once when it is free (or this thread holds it), else waiting with
// the GIL let go when this thread holds it.
inline std::unique_lock<std::recursive_mutex> LockFile(Ctx& ctx) {
  std::unique_lock<std::recursive_mutex> lock(ctx.mutex, std::try_to_lock);
  if (lock.owns_lock()) return lock;
  if (PyGILState_Check()) {
    py::gil_scoped_release nogil;
    lock.lock();
  } else {
    lock.lock();
  }
  return lock;
}

// The mutex of the registry of open databases, taken (after a file's mutex, never before, and
// without the GIL) to open, create and close.
std::mutex& RegistryMutex();
// The context of the file at the absolute path `path`: the same object while any holder of it
// lives.
CtxPtr ContextFor(const std::string& path);

// Warnings of the library go to Python's warnings module (category qtvodb.OdbWarning): a sink
// installed on each thread that calls the library gathers them during a call, and the calling
// code issues them once it holds the GIL again.
void InstallWarningSink();
// Issues the gathered warnings; with `quiet`, an error from the warnings machinery (a filter
// that turns warnings into errors) is dropped, for use while another exception is on its way.
void IssueWarnings(bool quiet);

// An odb_Exception made plain: its message and code taken while the database's mutex is held,
// since the library's strings count their references without atomics and may be shared with
// the database. Python sees it as qtvodb.OdbError.
struct LibraryError : std::runtime_error {
  LibraryError(const std::string& message, int c) : std::runtime_error(message), code(c) {}
  int code;
};

// Calls `f`, turning the library's exceptions into LibraryError; under the mutex.
template <class F>
auto Guarded(F& f) -> decltype(f()) {
  try {
    return f();
  } catch (const odb_Exception& e) {
    const odb_String text = e.JournalMessage();
    throw LibraryError(std::string(text.CStr(), text.Length()), e.Code());
  }
}

// Runs `g` and issues the warnings it gathered, also when it throws (then quietly).
template <class G>
auto Finish(G&& g) -> decltype(g()) {
  try {
    if constexpr (std::is_void_v<decltype(g())>) {
      g();
      IssueWarnings(false);
    } else {
      auto result = g();
      IssueWarnings(false);
      return result;
    }
  } catch (...) {
    IssueWarnings(true);
    throw;
  }
}

// A short call: with the GIL held, under the database's mutex. `f` must not touch Python (not
// even make a Python object), so it returns C++ values, which the caller turns into Python
// objects after the mutex is let go.
template <class F>
auto Locked(Ctx& ctx, F&& f) -> decltype(f()) {
  InstallWarningSink();
  return Finish([&]() -> decltype(f()) {
    std::unique_lock<std::recursive_mutex> lock = LockFile(ctx);
    return Guarded(f);
  });
}

// A long call: the GIL released, then the database's mutex taken; `f` must not touch Python.
// The mutex is let go before the GIL is taken back.
template <class F>
auto Released(Ctx& ctx, F&& f) -> decltype(f()) {
  InstallWarningSink();
  return Finish([&]() -> decltype(f()) {
    py::gil_scoped_release nogil;
    std::lock_guard<std::recursive_mutex> lock(ctx.mutex);
    return Guarded(f);
  });
}

// A library handle (odb_Step, odb_FieldOutput ...) bound to Python, with the context of its
// database. Handles share data with other handles of the same database, so they are copied and
// dropped only under its mutex: construct one inside Locked or Released.
template <class T>
struct Held {
  Held(CtxPtr c, const T& value) : ctx(std::move(c)), handle(value) {}
  Held(const Held&) = delete;
  Held& operator=(const Held&) = delete;
  ~Held() {
    if (!ctx) return;
    std::unique_lock<std::recursive_mutex> lock = LockFile(*ctx);
    handle.reset();
  }
  T& get() { return *handle; }

  CtxPtr ctx;
  std::optional<T> handle;
};

template <class T>
using HeldPtr = std::unique_ptr<Held<T>>;

// A copy of `value` for Python, made under the database's mutex (inside Locked or Released).
template <class T>
HeldPtr<T> Hold(const CtxPtr& ctx, const T& value) {
  return std::make_unique<Held<T>>(ctx, value);
}
// The Python object of a held copy, made once the mutex is let go.
template <class T>
py::object Own(HeldPtr<T> held) {
  return py::cast(held.release(), py::return_value_policy::take_ownership);
}

// Text of the library as a std::string, taken under the mutex (the library's strings share
// their characters with uncounted atomics, so none is kept past the mutex).
inline std::string S(const odb_String& s) {
  return std::string(s.CStr(), s.Length());
}
// A path argument (str or os.PathLike) made absolute and normalised, as the library names files.
std::string AbsolutePath(const py::object& path);

// The enumerations: a bound enum value or its name ("MISES", "NODAL"); anything else is a
// TypeError naming `what`, an unknown name a ValueError.
template <class E>
E ToEnum(const py::handle& value, const char* what) {
  py::object type = py::type::of<E>();
  if (py::isinstance(value, type)) return value.cast<E>();
  if (py::isinstance<py::str>(value)) {
    py::dict members = type.attr("__members__");
    if (members.contains(value)) return members[value].template cast<E>();
    throw py::value_error(std::string(what) + ": unknown name '" + value.cast<std::string>() +
                          "' (one of " +
                          py::str(py::list(members.attr("keys")())).cast<std::string>() + ")");
  }
  throw py::type_error(std::string(what) + " must be a qtvodb." +
                       type.attr("__name__").cast<std::string>() + " or its name, not " +
                       py::str(value.get_type().attr("__name__")).cast<std::string>());
}
// The enum's name as Python shows it ("NODAL").
std::string EnumName(const py::object& value);

// Arrays from Python: any array-like of numbers, converted to a C-contiguous array of int32
// (integer kinds only, each value checked to fit) or float32 (integer or floating kinds). An
// array that already is one is used as it is, without a copy. None, text and objects are a
// TypeError naming `what`.
py::array_t<int, py::array::c_style> IntArray(const py::handle& value, const char* what);
py::array_t<float, py::array::c_style> FloatArray(const py::handle& value, const char* what);

// A read-only array of `shape` over `data`, which `owner` keeps alive; the owner is deleted
// (with the GIL held) when the array and every view of it are gone.
template <class T, class Owner>
py::array ViewOf(const T* data, std::vector<py::ssize_t> shape, Owner* owner) {
  py::capsule base(owner, [](void* p) { delete static_cast<Owner*>(p); });
  py::array_t<T> array(shape, data, base);
  py::detail::array_proxy(array.ptr())->flags &= ~py::detail::npy_api::NPY_ARRAY_WRITEABLE_;
  return std::move(array);
}

// A repository as a read-only Python mapping in a fixed order: len, iteration over names, [],
// in, keys, values, items, get. A snapshot: taken again each time the attribute is read.
struct NamedMap {
  std::string kind;  // "Steps", "FieldOutputs" ...: the repr's title
  std::vector<std::string> names;
  std::vector<py::object> values;
  py::object Get(const std::string& name) const;
};

// Named copies for a NamedMap: taken under the mutex, turned into Python objects after.
template <class T>
using Named = std::vector<std::pair<std::string, HeldPtr<T>>>;

template <class T>
Named<T> HoldAll(const CtxPtr& ctx, const odb_Repository<odb_String, T>& repository) {
  Named<T> items;
  for (odb_RepositoryIterator<odb_String, T> it(repository); !it.isDone(); it.next())
    items.emplace_back(S(it.currentKey()), Hold(ctx, it.currentValue()));
  return items;
}

template <class T>
NamedMap ToMap(const char* kind, Named<T>&& items) {
  NamedMap map;
  map.kind = kind;
  for (auto& item : items) {
    map.names.push_back(std::move(item.first));
    map.values.push_back(Own(std::move(item.second)));
  }
  return map;
}

// One line about an object for its repr: "<qtvodb.KIND TEXT>".
inline std::string Repr(const char* kind, const std::string& text) {
  return std::string("<qtvodb.") + kind + " " + text + ">";
}
// "1 frame", "3 frames".
inline std::string Count(long long n, const char* noun) {
  return std::to_string(n) + " " + noun + (n == 1 ? "" : "s");
}
// A name in quotes, as Python shows a str.
inline std::string Quoted(const std::string& s) {
  return py::repr(py::str(s)).cast<std::string>();
}

void BindErrors(py::module_& m);
void BindEnums(py::module_& m);
void BindNamedMap(py::module_& m);
void BindDatabase(py::module_& m);
void BindModel(py::module_& m);
void BindSteps(py::module_& m);
void BindFields(py::module_& m);
void BindHistory(py::module_& m);

}  // namespace qtvodb

#endif
