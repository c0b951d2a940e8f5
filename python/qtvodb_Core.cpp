// The shared pieces of the module: file contexts, the warning sink, argument conversion and the
// named mapping.
#include "qtvodb_Core.h"

#include <climits>
#include <map>

namespace qtvodb {

std::mutex& RegistryMutex() {
  static std::mutex mutex;
  return mutex;
}

CtxPtr ContextFor(const std::string& path) {
  static std::mutex mapMutex;
  static std::map<std::string, std::weak_ptr<Ctx>> contexts;
  std::lock_guard<std::mutex> lock(mapMutex);
  std::weak_ptr<Ctx>& slot = contexts[path];
  if (CtxPtr ctx = slot.lock()) return ctx;
  auto ctx = std::make_shared<Ctx>();
  ctx->path = path;
  slot = ctx;
  // Entries of files no longer held are dropped as they are met, so the map stays small.
  for (auto it = contexts.begin(); it != contexts.end();)
    it = it->second.expired() ? contexts.erase(it) : std::next(it);
  return ctx;
}

namespace {

// Gathers the warnings of one thread's calls into the library until they are issued.
class WarningSink : public wip_WipReporter {
 public:
  void Error(const odb_String&) override {}  // the library throws the error itself
  void Error(const odb_SequenceString&) override {}
  void Warning(const odb_String& text) override {
    pending.emplace_back(text.CStr(), text.Length());
  }
  void Warning(const odb_SequenceString& texts) override {
    if (texts.size() > 0) Warning(texts[0]);
  }
  void Landmark(const odb_String&) override {}
  void Verbose(const odb_String&) override {}
  void Print(const odb_String&) override {}
  void Print(const odb_SequenceString&) override {}
  bool Interrupted() override { return false; }
  void CommandDone() override {}
  void InterruptedThrow() override {}

  std::vector<std::string> pending;
};

// One sink per thread, never destroyed: the library may warn while the process exits (closing
// what is still open), after the thread's own objects are gone.
thread_local WarningSink* t_sink = nullptr;

}  // namespace

py::handle& WarningCategory();

void InstallWarningSink() {
  if (t_sink) return;
  t_sink = new WarningSink;
  thr_ThreadSingleton<wip_WIP>::Instance().Install(t_sink);
}

void IssueWarnings(bool quiet) {
  if (!t_sink || t_sink->pending.empty()) return;
  std::vector<std::string> texts;
  texts.swap(t_sink->pending);
  for (const std::string& text : texts) {
    if (PyErr_WarnEx(WarningCategory().ptr(), text.c_str(), 1) == 0) continue;
    if (!quiet) throw py::error_already_set();
    PyErr_Clear();
  }
}

std::string AbsolutePath(const py::object& path) {
  if (path.is_none()) throw py::type_error("path must be a str or os.PathLike, not None");
  py::module_ os = py::module_::import("os");
  py::object text = os.attr("fspath")(path);
  if (!py::isinstance<py::str>(text))
    throw py::type_error("path must be a str or os.PathLike giving a str, not bytes");
  return os.attr("path").attr("abspath")(text).cast<std::string>();
}

std::string EnumName(const py::object& value) {
  return value.attr("name").cast<std::string>();
}

namespace {

py::array AnyArray(const py::handle& value, const char* what, const char* wanted) {
  if (value.is_none())
    throw py::type_error(std::string(what) + " must be an array of " + wanted + ", not None");
  py::array array = py::array::ensure(value);
  if (!array)
    throw py::type_error(std::string(what) + " must be an array of " + wanted + ", not " +
                         py::str(value.get_type().attr("__name__")).cast<std::string>());
  return array;
}

py::type_error WrongKind(const char* what, const char* wanted, const py::array& array) {
  return py::type_error(std::string(what) + " must hold " + wanted + ", not " +
                        py::str(array.dtype()).cast<std::string>());
}

}  // namespace

py::array_t<int, py::array::c_style> IntArray(const py::handle& value, const char* what) {
  py::array array = AnyArray(value, what, "integers");
  const char kind = array.dtype().kind();
  if (kind != 'i' && kind != 'u') throw WrongKind(what, "integers", array);
  using IntArrayT = py::array_t<int, py::array::c_style>;
  if (IntArrayT::check_(array)) return py::reinterpret_borrow<IntArrayT>(array);
  // Narrowing to 32 bits must not wrap a label round to another one.
  if (array.size() > 0) {
    const py::object low = array.attr("min")(), high = array.attr("max")();
    if (low.cast<long long>() < INT_MIN || high.cast<double>() > INT_MAX)
      throw py::value_error(std::string(what) + " holds values outside the 32-bit range");
  }
  return py::array_t<int, py::array::c_style | py::array::forcecast>::ensure(array);
}

py::array_t<float, py::array::c_style> FloatArray(const py::handle& value, const char* what) {
  py::array array = AnyArray(value, what, "numbers");
  const char kind = array.dtype().kind();
  if (kind != 'f' && kind != 'i' && kind != 'u') throw WrongKind(what, "numbers", array);
  return py::array_t<float, py::array::c_style | py::array::forcecast>::ensure(array);
}

py::object NamedMap::Get(const std::string& name) const {
  for (std::size_t i = 0; i < names.size(); ++i)
    if (names[i] == name) return values[i];
  throw py::key_error(name);
}

void BindNamedMap(py::module_& m) {
  py::class_<NamedMap>(m, "NamedMap",
                       "A read-only mapping of names to objects (steps, fields, sets ...), in "
                       "the order the library lists them; taken when the attribute is read.")
      .def("__len__", [](const NamedMap& map) { return map.names.size(); })
      .def("__getitem__", &NamedMap::Get)
      .def("__contains__",
           [](const NamedMap& map, const py::object& name) {
             if (!py::isinstance<py::str>(name)) return false;
             const std::string key = name.cast<std::string>();
             for (const std::string& n : map.names)
               if (n == key) return true;
             return false;
           })
      .def("__iter__", [](const NamedMap& map) { return py::iter(py::cast(map.names)); })
      .def("keys", [](const NamedMap& map) { return map.names; })
      .def("values", [](const NamedMap& map) { return py::list(py::cast(map.values)); })
      .def("items",
           [](const NamedMap& map) {
             py::list items;
             for (std::size_t i = 0; i < map.names.size(); ++i)
               items.append(py::make_tuple(map.names[i], map.values[i]));
             return items;
           })
      .def(
          "get",
          [](const NamedMap& map, const std::string& name, py::object fallback) {
            for (std::size_t i = 0; i < map.names.size(); ++i)
              if (map.names[i] == name) return map.values[i];
            return fallback;
          },
          py::arg("name"), py::arg("default") = py::none())
      .def("__repr__", [](const NamedMap& map) {
        return "<qtvodb." + map.kind + " " + py::repr(py::cast(map.names)).cast<std::string>() +
               ">";
      });
}

}  // namespace qtvodb
