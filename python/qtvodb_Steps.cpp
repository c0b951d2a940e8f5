// Steps and their frames: a step's frames as a Python sequence, a frame's field outputs by name.
#include "qtvodb_Core.h"

namespace qtvodb {

namespace {

using StepPtr = std::shared_ptr<Held<odb_Step>>;

// A step's frames, in creation order: len, [i] (negative from the end), slices, iteration.
struct Frames {
  StepPtr step;

  int Size() {
    return Locked(*step->ctx, [&] { return step->get().frames().size(); });
  }
  py::object At(int i) {
    return Own(Locked(*step->ctx, [&] {
      const int n = step->get().frames().size();
      // Negative indices count from the end; out of range stays out of range, and the library
      // says so in its words.
      return Hold(step->ctx, step->get().frames(i < 0 && i + n >= 0 ? i + n : i));
    }));
  }
  py::list Slice(const py::slice& slice) {
    std::size_t start = 0, stop = 0, step_ = 0, length = 0;
    if (!slice.compute(Size(), &start, &stop, &step_, &length)) throw py::error_already_set();
    py::list frames;
    for (std::size_t k = 0; k < length; ++k) frames.append(At(int(start + k * step_)));
    return frames;
  }
};

}  // namespace

void BindSteps(py::module_& m) {
  py::class_<Frames>(m, "Frames", "The frames of a step, in the order they were made.")
      .def("__len__", &Frames::Size)
      .def("__getitem__", &Frames::At)
      .def("__getitem__", &Frames::Slice)
      .def("__iter__",
           [](Frames& f) {
             py::list all;
             const int n = f.Size();
             for (int i = 0; i < n; ++i) all.append(f.At(i));
             return py::iter(all);
           })
      .def("__repr__", [](Frames& f) { return Repr("Frames", std::to_string(f.Size())); });

  py::class_<Held<odb_Frame>>(m, "Frame",
                              "One frame of a step: an increment, a mode or a load case.")
      .def_property_readonly(
          "index",
          [](Held<odb_Frame>& f) { return Locked(*f.ctx, [&] { return f.get().frameIndex(); }); },
          "The frame's position in its step, from 0.")
      .def_property_readonly(
          "id",
          [](Held<odb_Frame>& f) { return Locked(*f.ctx, [&] { return f.get().frameId(); }); })
      .def_property_readonly("increment_number",
                             [](Held<odb_Frame>& f) {
                               return Locked(*f.ctx, [&] { return f.get().incrementNumber(); });
                             })
      .def_property_readonly(
          "value",
          [](Held<odb_Frame>& f) { return Locked(*f.ctx, [&] { return f.get().frameValue(); }); },
          "The frame value (time, frequency ...), as stored in single precision.")
      .def_property_readonly("description",
                             [](Held<odb_Frame>& f) {
                               return Locked(*f.ctx, [&] { return S(f.get().description()); });
                             })
      .def_property_readonly(
          "domain",
          [](Held<odb_Frame>& f) { return Locked(*f.ctx, [&] { return f.get().domain(); }); })
      .def_property_readonly(
          "field_outputs",
          [](Held<odb_Frame>& f) {
            return ToMap("FieldOutputs",
                         Locked(*f.ctx, [&] { return HoldAll(f.ctx, f.get().fieldOutputs()); }));
          },
          "The frame's field outputs by name, in name order.")
      .def(
          "create_field_output",
          [](Held<odb_Frame>& f, const std::string& name, const std::string& description,
             const py::object& type, const std::vector<std::string>& componentLabels) {
            const auto t = ToEnum<odb_Enum::odb_DataTypeEnum>(type, "type");
            return Own(Locked(*f.ctx, [&] {
              odb_SequenceString labels;
              for (const std::string& l : componentLabels) labels.append(l.c_str());
              return Hold(f.ctx, f.get().FieldOutput(name.c_str(), description.c_str(), t, labels));
            }));
          },
          py::arg("name"), py::arg("description") = "", py::arg("type") = "SCALAR",
          py::arg("component_labels") = std::vector<std::string>(),
          "Makes a field output; a tensor without component labels gets NAME11, NAME22 ...")
      .def("__repr__", [](Held<odb_Frame>& f) {
        int index = 0, increment = 0;
        double value = 0;
        Locked(*f.ctx, [&] {
          index = f.get().frameIndex();
          increment = f.get().incrementNumber();
          value = f.get().frameValue();
        });
        return Repr("Frame", std::to_string(index) + ": increment " + std::to_string(increment) +
                                 ", value " + py::repr(py::float_(value)).cast<std::string>());
      });

  py::class_<Held<odb_Step>>(m, "Step", "One analysis step: its frames and history regions.")
      .def_property_readonly(
          "name",
          [](Held<odb_Step>& s) { return Locked(*s.ctx, [&] { return S(s.get().name()); }); })
      .def_property_readonly("description",
                             [](Held<odb_Step>& s) {
                               return Locked(*s.ctx, [&] { return S(s.get().description()); });
                             })
      .def_property_readonly(
          "domain",
          [](Held<odb_Step>& s) { return Locked(*s.ctx, [&] { return s.get().domain(); }); })
      .def_property_readonly(
          "procedure",
          [](Held<odb_Step>& s) { return Locked(*s.ctx, [&] { return S(s.get().procedure()); }); })
      .def_property_readonly(
          "time_period",
          [](Held<odb_Step>& s) { return Locked(*s.ctx, [&] { return s.get().timePeriod(); }); })
      .def_property_readonly(
          "total_time",
          [](Held<odb_Step>& s) { return Locked(*s.ctx, [&] { return s.get().totalTime(); }); })
      .def_property_readonly("previous_step_name",
                             [](Held<odb_Step>& s) {
                               return Locked(*s.ctx, [&] { return S(s.get().previousStepName()); });
                             })
      .def_property_readonly("frames",
                             [](Held<odb_Step>& s) {
                               return Frames{Locked(*s.ctx, [&] {
                                 return std::make_shared<Held<odb_Step>>(s.ctx, s.get());
                               })};
                             })
      .def_property_readonly("history_regions",
                             [](Held<odb_Step>& s) {
                               return ToMap("HistoryRegions", Locked(*s.ctx, [&] {
                                              return HoldAll(s.ctx, s.get().historyRegions());
                                            }));
                             })
      .def(
          "get_frame",
          [](Held<odb_Step>& s, double value, const py::object& match) {
            const auto how = ToEnum<odb_Enum::odb_MatchEnum>(match, "match");
            return Own(Locked(*s.ctx, [&] { return Hold(s.ctx, s.get().getFrame(value, how)); }));
          },
          py::arg("value"), py::arg("match") = "CLOSEST")
      .def(
          "create_frame",
          [](Held<odb_Step>& s, int increment, double value, const std::string& description) {
            return Own(Locked(*s.ctx, [&] {
              return Hold(s.ctx, s.get().Frame(increment, value, description.c_str()));
            }));
          },
          py::arg("increment_number"), py::arg("value"), py::arg("description") = "")
      .def(
          "create_history_region",
          [](Held<odb_Step>& s, const std::string& name, const std::string& description,
             Held<odb_Instance>* instance, std::optional<int> node, std::optional<int> element,
             int integrationPoint) {
            if (instance && instance->ctx != s.ctx)
              throw py::value_error("the instance belongs to another database");
            if ((node || element) && !instance)
              throw py::value_error("a node or an element needs its instance");
            return Own(Locked(*s.ctx, [&] {
              odb_HistoryPoint point(odb_String("Whole Model"));
              if (instance) {
                const odb_Instance& i = instance->get();
                if (node)
                  point = odb_HistoryPoint(i.getNodeFromLabel(*node), i);
                else if (element)
                  point = odb_HistoryPoint(i.getElementFromLabel(*element), integrationPoint, i);
                else
                  point = odb_HistoryPoint(i);
              }
              return Hold(s.ctx, s.get().HistoryRegion(name.c_str(), description.c_str(), point));
            }));
          },
          py::arg("name") = "", py::arg("description") = "", py::kw_only(),
          py::arg("instance") = nullptr, py::arg("node") = py::none(),
          py::arg("element") = py::none(), py::arg("integration_point") = 0,
          "Makes a history region at a node or an element (integration point 0: the whole "
          "element) of `instance`, at the instance, or, with neither, at the whole model.")
      .def("__repr__", [](Held<odb_Step>& s) {
        std::string name, procedure;
        int frames = 0;
        Locked(*s.ctx, [&] {
          name = S(s.get().name());
          procedure = S(s.get().procedure());
          frames = s.get().frames().size();
        });
        return Repr("Step", Quoted(name) + " " + procedure + ", " + Count(frames, "frame"));
      });
}

}  // namespace qtvodb
