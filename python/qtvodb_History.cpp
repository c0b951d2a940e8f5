// History output: regions by name, and each output's (time, value) pairs as numpy arrays.
#include "qtvodb_Core.h"

namespace qtvodb {

namespace {

using Region = Held<odb_HistoryRegion>;
using Output = Held<odb_HistoryOutput>;
using Pairs = Held<odb_HistoryData>;

// The pairs of an output, read whole (with the GIL released); each array made of them keeps
// them alive.
std::shared_ptr<Pairs> ReadPairs(Output& o) {
  return Released(*o.ctx, [&] { return std::make_shared<Pairs>(o.ctx, o.get().data()); });
}

void AddData(Output& o, const py::object& times, const py::object& values) {
  if (times.is_none()) throw py::type_error("times must be an array of numbers, not None");
  py::array t = py::array::ensure(times);
  if (!t || (t.dtype().kind() != 'f' && t.dtype().kind() != 'i' && t.dtype().kind() != 'u'))
    throw py::type_error("times must be an array of numbers");
  auto time = py::array_t<double, py::array::c_style | py::array::forcecast>::ensure(t);
  auto value = FloatArray(values, "values");
  Released(*o.ctx, [&] {
    if (time.size() != value.size()) {
      // The library refuses arrays of unequal lengths in its own words, appending nothing.
      const float zero = 0;
      const bool moreTimes = time.size() > value.size();
      o.get().addData(odb_SequenceFloat(&zero, moreTimes ? 1 : 0),
                      odb_SequenceFloat(&zero, moreTimes ? 0 : 1));
    }
    const double* tp = time.data();
    const float* vp = value.data();
    for (py::ssize_t i = 0; i < time.size(); ++i) o.get().addData(tp[i], vp[i]);
  });
}

}  // namespace

void BindHistory(py::module_& m) {
  py::class_<Output>(m, "HistoryOutput", "One quantity of a history region: (time, value) pairs.")
      .def_property_readonly(
          "name", [](Output& o) { return Locked(*o.ctx, [&] { return S(o.get().name()); }); })
      .def_property_readonly(
          "description",
          [](Output& o) { return Locked(*o.ctx, [&] { return S(o.get().description()); }); })
      .def_property_readonly(
          "type", [](Output& o) { return Locked(*o.ctx, [&] { return o.get().type(); }); })
      .def_property_readonly(
          "data",
          [](Output& o) {
            std::shared_ptr<Pairs> pairs = ReadPairs(o);
            const odb_HistoryData& d = pairs->get();
            py::array_t<double> out({py::ssize_t(d.size()), py::ssize_t(2)});
            double* p = out.mutable_data();
            for (int i = 0; i < d.size(); ++i) {
              p[2 * i] = d.times()[i];
              p[2 * i + 1] = d.values()[i];
            }
            return out;
          },
          "(pairs, 2) float64: time and value of each pair, in the order added (a copy).")
      .def_property_readonly(
          "times",
          [](Output& o) {
            std::shared_ptr<Pairs> pairs = ReadPairs(o);
            return ViewOf(pairs->get().times(), {pairs->get().size()},
                          new std::shared_ptr<Pairs>(pairs));
          },
          "The times, float64, read-only over the library's memory.")
      .def_property_readonly(
          "values",
          [](Output& o) {
            std::shared_ptr<Pairs> pairs = ReadPairs(o);
            return ViewOf(pairs->get().values(), {pairs->get().size()},
                          new std::shared_ptr<Pairs>(pairs));
          },
          "The values, float32, read-only over the library's memory.")
      .def("add_data", &AddData, py::arg("times"), py::arg("values"),
           "Appends (times[i], values[i]) pairs; saved by the database's save().")
      .def("__len__", [](Output& o) { return ReadPairs(o)->get().size(); })
      .def("__repr__", [](Output& o) {
        std::string name;
        Locked(*o.ctx, [&] { name = S(o.get().name()); });
        return Repr("HistoryOutput",
                    Quoted(name) + ": " + Count(ReadPairs(o)->get().size(), "pair"));
      });

  py::class_<Region>(m, "HistoryRegion",
                     "The history outputs recorded at one point of the model in one step.")
      .def_property_readonly(
          "name", [](Region& r) { return Locked(*r.ctx, [&] { return S(r.get().name()); }); })
      .def_property_readonly(
          "description",
          [](Region& r) { return Locked(*r.ctx, [&] { return S(r.get().description()); }); })
      .def_property_readonly(
          "position", [](Region& r) { return Locked(*r.ctx, [&] { return r.get().position(); }); })
      .def_property_readonly("history_outputs",
                             [](Region& r) {
                               return ToMap("HistoryOutputs", Locked(*r.ctx, [&] {
                                              return HoldAll(r.ctx, r.get().historyOutputs());
                                            }));
                             })
      .def(
          "create_history_output",
          [](Region& r, const std::string& name, const std::string& description) {
            return Own(Locked(*r.ctx, [&] {
              return Hold(r.ctx, r.get().HistoryOutput(name.c_str(), description.c_str()));
            }));
          },
          py::arg("name"), py::arg("description") = "")
      .def("__repr__", [](Region& r) {
        std::string name;
        int n = 0;
        Locked(*r.ctx, [&] {
          name = S(r.get().name());
          n = r.get().historyOutputs().size();
        });
        return Repr("HistoryRegion", Quoted(name) + ": " + Count(n, "output"));
      });
}

}  // namespace qtvodb
