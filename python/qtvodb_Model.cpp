// The model: parts and instances with their nodes, elements and sets as numpy arrays, and the
// root assembly.
#include <numeric>

#include "qtvodb_Core.h"

namespace qtvodb {

namespace {

using Entity = Held<odb_DiscreteEntity>;
using EntityPtr = std::shared_ptr<Entity>;

// The nodes of a part or an instance: labels and coordinates (placed, for an instance), read
// together on first use into arrays of their own, which are then kept.
struct Nodes {
  explicit Nodes(EntityPtr e) : entity(std::move(e)) {}
  EntityPtr entity;
  py::object labels, coordinates;

  void Read() {
    if (labels) return;
    const int n = Locked(*entity->ctx, [&] { return entity->get().nodes().size(); });
    py::array_t<int> l(n);
    py::array_t<float> c({py::ssize_t(n), py::ssize_t(3)});
    int* lp = l.mutable_data();
    float* cp = c.mutable_data();
    Released(*entity->ctx, [&] {
      entity->get().readNodes(odb_MutableArrayView<int>(lp, n),
                              odb_MutableArrayView<float>(cp, std::size_t(n) * 3));
    });
    labels = std::move(l);
    coordinates = std::move(c);
  }
};

// The elements of a part or an instance: labels, node labels and types, read on first use.
struct Elements {
  explicit Elements(EntityPtr e) : entity(std::move(e)) {}
  EntityPtr entity;
  py::object labels, flat, offsets, types;

  void Read() {
    if (labels) return;
    std::size_t n = 0, length = 0;
    Locked(*entity->ctx, [&] {
      n = entity->get().elements().size();
      length = entity->get().connectivityLength();
    });
    py::array_t<int> l(n), c(length);
    py::array_t<std::int64_t> o(n + 1);
    int* lp = l.mutable_data();
    int* cp = c.mutable_data();
    std::int64_t* op = o.mutable_data();
    std::vector<std::string> names;
    Released(*entity->ctx, [&] {
      const odb_DiscreteEntity& e = entity->get();
      e.readElements(odb_MutableArrayView<int>(lp, n), odb_MutableArrayView<int>(cp, length));
      const odb_SequenceElement& all = e.elements();
      op[0] = 0;
      names.reserve(n);
      for (std::size_t i = 0; i < n; ++i) {
        const odb_Element element = all[int(i)];
        op[i + 1] = op[i] + element.numberOfNodes();
        names.push_back(S(element.type()));
      }
    });
    labels = std::move(l);
    flat = std::move(c);
    offsets = std::move(o);
    types = py::cast(names);
  }

  // (elements, nodes per element) when every element has as many nodes.
  py::object Connectivity() {
    Read();
    auto o = offsets.cast<py::array_t<std::int64_t>>();
    const std::int64_t n = o.size() - 1;
    const std::int64_t* op = o.data();
    const std::int64_t width = n > 0 ? op[1] : 0;
    for (std::int64_t i = 0; i < n; ++i)
      if (op[i + 1] - op[i] != width)
        throw py::value_error(
            "the elements have different numbers of nodes: use flat_connectivity and offsets");
    return flat.attr("reshape")(n, width);
  }
};

// Labels of a set's nodes or elements in one of the meshes it spans.
py::array LabelsOf(Held<odb_Set>& set, const std::optional<std::string>& instance, bool nodes) {
  std::vector<int> labels = Locked(*set.ctx, [&] {
    std::vector<int> out;
    const odb_Set& s = set.get();
    if (nodes) {
      const odb_SequenceNode seq = instance ? s.nodes(instance->c_str()) : s.nodes();
      out.reserve(seq.size());
      for (int i = 0; i < seq.size(); ++i) out.push_back(seq[i].label());
    } else {
      const odb_SequenceElement seq = instance ? s.elements(instance->c_str()) : s.elements();
      out.reserve(seq.size());
      for (int i = 0; i < seq.size(); ++i) out.push_back(seq[i].label());
    }
    return out;
  });
  return py::array_t<int>(labels.size(), labels.data());
}

template <class T>
std::string EntityRepr(Held<T>& held, const char* kind) {
  std::string name;
  int nodes = 0, elements = 0;
  Locked(*held.ctx, [&] {
    name = S(held.get().name());
    nodes = held.get().nodes().size();
    elements = held.get().elements().size();
  });
  return Repr(kind, Quoted(name) + ": " + Count(nodes, "node") + ", " + Count(elements, "element"));
}

// What parts and instances share.
template <class T>
void BindEntity(py::class_<Held<T>>& c) {
  c.def_property_readonly(
       "name", [](Held<T>& h) { return Locked(*h.ctx, [&] { return S(h.get().name()); }); })
      .def_property_readonly(
          "embedded_space",
          [](Held<T>& h) { return Locked(*h.ctx, [&] { return h.get().embeddedSpace(); }); })
      .def_property_readonly(
          "type", [](Held<T>& h) { return Locked(*h.ctx, [&] { return h.get().type(); }); })
      .def_property_readonly(
          "nodes",
          [](Held<T>& h) {
            return Nodes(Locked(*h.ctx, [&] { return std::make_shared<Entity>(h.ctx, h.get()); }));
          },
          "The nodes as arrays: labels (n,) int32 and coordinates (n, 3) float32.")
      .def_property_readonly(
          "elements",
          [](Held<T>& h) {
            return Elements(
                Locked(*h.ctx, [&] { return std::make_shared<Entity>(h.ctx, h.get()); }));
          },
          "The elements as arrays: labels, connectivity (node labels), offsets, types.")
      .def_property_readonly("node_sets",
                             [](Held<T>& h) {
                               return ToMap("NodeSets", Locked(*h.ctx, [&] {
                                              return HoldAll(h.ctx, h.get().nodeSets());
                                            }));
                             })
      .def_property_readonly("element_sets",
                             [](Held<T>& h) {
                               return ToMap("ElementSets", Locked(*h.ctx, [&] {
                                              return HoldAll(h.ctx, h.get().elementSets());
                                            }));
                             })
      .def_property_readonly("surfaces", [](Held<T>& h) {
        return ToMap("Surfaces",
                     Locked(*h.ctx, [&] { return HoldAll(h.ctx, h.get().surfaces()); }));
      });
  // Sets from label arrays, on parts and instances alike.
  c.def(
       "create_node_set",
       [](Held<T>& h, const std::string& name, const py::object& labels) {
         auto l = IntArray(labels, "labels");
         return Own(Locked(*h.ctx, [&] {
           return Hold(h.ctx,
                       h.get().NodeSet(name.c_str(), odb_SequenceInt(l.data(), int(l.size()))));
         }));
       },
       py::arg("name"), py::arg("labels"))
      .def(
          "create_element_set",
          [](Held<T>& h, const std::string& name, const py::object& labels) {
            auto l = IntArray(labels, "labels");
            return Own(Locked(*h.ctx, [&] {
              return Hold(h.ctx, h.get().ElementSet(name.c_str(),
                                                    odb_SequenceInt(l.data(), int(l.size()))));
            }));
          },
          py::arg("name"), py::arg("labels"));
}

}  // namespace

void BindModel(py::module_& m) {
  py::class_<Nodes>(m, "Nodes", "The nodes of a part or an instance, as arrays read on first use.")
      .def("__len__",
           [](Nodes& n) {
             return Locked(*n.entity->ctx, [&] { return n.entity->get().nodes().size(); });
           })
      .def_property_readonly("labels",
                             [](Nodes& n) {
                               n.Read();
                               return n.labels;
                             })
      .def_property_readonly("coordinates",
                             [](Nodes& n) {
                               n.Read();
                               return n.coordinates;
                             })
      .def("__repr__", [](Nodes& n) {
        return Repr("Nodes", std::to_string(Locked(
                                 *n.entity->ctx, [&] { return n.entity->get().nodes().size(); })));
      });

  py::class_<Elements>(m, "Elements",
                       "The elements of a part or an instance, as arrays read on first use.")
      .def("__len__",
           [](Elements& e) {
             return Locked(*e.entity->ctx, [&] { return e.entity->get().elements().size(); });
           })
      .def_property_readonly("labels",
                             [](Elements& e) {
                               e.Read();
                               return e.labels;
                             })
      .def_property_readonly("connectivity", &Elements::Connectivity,
                             "(elements, nodes per element) int32 node labels; a ValueError when "
                             "the elements have different numbers of nodes.")
      .def_property_readonly(
          "flat_connectivity",
          [](Elements& e) {
            e.Read();
            return e.flat;
          },
          "The node labels of every element, one element after the other.")
      .def_property_readonly(
          "offsets",
          [](Elements& e) {
            e.Read();
            return e.offsets;
          },
          "Where each element's nodes start in flat_connectivity (elements + 1).")
      .def_property_readonly(
          "types",
          [](Elements& e) {
            e.Read();
            return e.types;
          },
          "The type name of each element.")
      .def("__repr__", [](Elements& e) {
        return Repr("Elements", std::to_string(Locked(*e.entity->ctx, [&] {
                      return e.entity->get().elements().size();
                    })));
      });

  py::class_<Held<odb_Set>>(m, "Set", "A node set, element set or surface.")
      .def_property_readonly(
          "name",
          [](Held<odb_Set>& s) { return Locked(*s.ctx, [&] { return S(s.get().name()); }); })
      .def_property_readonly(
          "type", [](Held<odb_Set>& s) { return Locked(*s.ctx, [&] { return s.get().type(); }); })
      .def_property_readonly("instance_names",
                             [](Held<odb_Set>& s) {
                               return Locked(*s.ctx, [&] {
                                 std::vector<std::string> names;
                                 const odb_SequenceString all = s.get().instanceNames();
                                 for (int i = 0; i < all.size(); ++i) names.push_back(S(all[i]));
                                 return names;
                               });
                             })
      .def(
          "node_labels",
          [](Held<odb_Set>& s, const std::optional<std::string>& instance) {
            return LabelsOf(s, instance, true);
          },
          py::arg("instance") = py::none(),
          "The labels of a node set's nodes in its first mesh, or in the instance named.")
      .def(
          "element_labels",
          [](Held<odb_Set>& s, const std::optional<std::string>& instance) {
            return LabelsOf(s, instance, false);
          },
          py::arg("instance") = py::none(),
          "The labels of an element set's or a surface's elements, likewise.")
      .def("__repr__", [](Held<odb_Set>& s) {
        std::string name;
        odb_Set::Type type = odb_Set::NODE_SET;
        Locked(*s.ctx, [&] {
          name = S(s.get().name());
          type = s.get().type();
        });
        return Repr("Set", Quoted(name) + " " + EnumName(py::cast(type)));
      });

  py::class_<Held<odb_DiscretePart>> part(m, "Part",
                                          "A part of the model: a mesh that instances place.");
  BindEntity(part);
  part.def(
          "add_nodes",
          [](Held<odb_DiscretePart>& p, const py::object& labels, const py::object& coordinates,
             const std::string& setName) {
            auto l = IntArray(labels, "labels");
            auto c = FloatArray(coordinates, "coordinates");
            Released(*p.ctx, [&] {
              p.get().addNodes(odb_ArrayView<int>(l.data(), l.size()),
                               odb_ArrayView<float>(c.data(), c.size()), setName.c_str());
            });
          },
          py::arg("labels"), py::arg("coordinates"), py::arg("set_name") = "",
          "Adds nodes: labels (n,) and coordinates (n, 3), or (n, 2) in a planar part, in any "
          "contiguous layout of that many numbers.")
      .def(
          "add_elements",
          [](Held<odb_DiscretePart>& p, const py::object& labels, const py::object& connectivity,
             const std::string& type, const std::string& setName) {
            auto l = IntArray(labels, "labels");
            auto c = IntArray(connectivity, "connectivity");
            Released(*p.ctx, [&] {
              p.get().addElements(odb_ArrayView<int>(l.data(), l.size()),
                                  odb_ArrayView<int>(c.data(), c.size()), type.c_str(),
                                  setName.c_str());
            });
          },
          py::arg("labels"), py::arg("connectivity"), py::arg("type"), py::arg("set_name") = "",
          "Adds elements of one type: labels (n,) and connectivity (n, nodes per element).")
      .def("__repr__", [](Held<odb_DiscretePart>& p) { return EntityRepr(p, "Part"); });

  py::class_<Held<odb_Instance>> instance(m, "Instance", "A part placed in the assembly.");
  BindEntity(instance);
  instance
      .def_property_readonly("part_name",
                             [](Held<odb_Instance>& i) {
                               return Locked(*i.ctx, [&] { return S(i.get().partName()); });
                             })
      .def("__repr__", [](Held<odb_Instance>& i) { return EntityRepr(i, "Instance"); });

  py::class_<Held<odb_Assembly>>(m, "Assembly",
                                 "The root assembly: instances and the sets across them.")
      .def_property_readonly(
          "name",
          [](Held<odb_Assembly>& a) { return Locked(*a.ctx, [&] { return S(a.get().name()); }); })
      .def_property_readonly("instances",
                             [](Held<odb_Assembly>& a) {
                               return ToMap("Instances", Locked(*a.ctx, [&] {
                                              return HoldAll(a.ctx, a.get().instances());
                                            }));
                             })
      .def_property_readonly("node_sets",
                             [](Held<odb_Assembly>& a) {
                               return ToMap("NodeSets", Locked(*a.ctx, [&] {
                                              return HoldAll(a.ctx, a.get().nodeSets());
                                            }));
                             })
      .def_property_readonly("element_sets",
                             [](Held<odb_Assembly>& a) {
                               return ToMap("ElementSets", Locked(*a.ctx, [&] {
                                              return HoldAll(a.ctx, a.get().elementSets());
                                            }));
                             })
      .def(
          "create_instance",
          [](Held<odb_Assembly>& a, Held<odb_DiscretePart>& part, const std::string& name) {
            // A part of another database is refused by the library, as one of no database is;
            // the other database's handle is not touched without its own mutex.
            const bool ours = part.ctx == a.ctx;
            return Own(Locked(*a.ctx, [&] {
              return Hold(a.ctx,
                          a.get().Instance(name.c_str(), ours ? part.get() : odb_DiscretePart()));
            }));
          },
          py::arg("part"), py::arg("name"), "Places `part` as the instance `name`.")
      .def("__repr__", [](Held<odb_Assembly>& a) {
        std::string name;
        int n = 0;
        Locked(*a.ctx, [&] {
          name = S(a.get().name());
          n = a.get().instances().size();
        });
        return Repr("Assembly", Quoted(name) + ": " + Count(n, "instance"));
      });
}

}  // namespace qtvodb
