// Field outputs: their blocks of bulk data as read-only numpy views of the library's arrays, one
// array over a whole field (optionally one invariant of it), and writing from numpy arrays.
#include <algorithm>

#include "qtvodb_Core.h"
#include "qtvodb_Operators.h"

namespace qtvodb {

namespace {

using Block = Held<odb_FieldBulkData>;
using BlockPtr = std::shared_ptr<Block>;
using Field = Held<odb_FieldOutput>;

// One block of a field: the arrays are the library's own, read from the file once on first use
// (with the GIL released) and shown without a copy, read-only; each array keeps the block alive.
struct BulkData {
  BlockPtr block;

  // A read-only view of what `get` gives: length() rows of width() values with `columns`, else
  // length() values; None when it gives none.
  template <class T, class F>
  py::object View(F get, bool columns) {
    int length = 0, width = 0;
    const T* data = Released(*block->ctx, [&] {
      length = block->get().length();
      width = block->get().width();
      return get(block->get());
    });
    if (!data) return py::none();
    std::vector<py::ssize_t> shape{length};
    if (columns) shape.push_back(width);
    return ViewOf(data, shape, new BlockPtr(block));
  }
};

// A field's attributes; Locked reads, converted after.
template <class F>
auto Ask(Field& f, F get) {
  return Locked(*f.ctx, [&] { return get(f.get()); });
}

// The whole field (a subset at `position`, one invariant) as one array of its own.
py::array ValuesArray(Field& f, const py::object& position, const py::object& invariant) {
  std::optional<odb_Enum::odb_ResultPositionEnum> where;
  std::optional<odb_Enum::odb_InvariantEnum> scalar;
  if (!position.is_none()) where = ToEnum<odb_Enum::odb_ResultPositionEnum>(position, "position");
  if (!invariant.is_none()) scalar = ToEnum<odb_Enum::odb_InvariantEnum>(invariant, "invariant");
  // The derived field lives, under the mutex, until its blocks are read into the array. The
  // Mises stress of a full tensor field is taken from its blocks' own (mises()), which cost a
  // third of a scalar field made for it.
  std::size_t rows = 0;
  int width = 0;
  bool blockMises = false;
  HeldPtr<odb_FieldOutput> derived = Released(*f.ctx, [&] {
    odb_FieldOutput field = f.get();
    if (where) field = field.getSubset(*where);
    if (scalar == odb_Enum::MISES && field.type() == odb_Enum::TENSOR_3D_FULL) {
      const odb_SequenceInvariant valid = field.validInvariants();
      blockMises = valid.isMember(odb_Enum::MISES);  // else refused below, as the library does
    }
    if (scalar && !blockMises) field = field.getScalarField(*scalar);
    const odb_SequenceFieldBulkData& blocks = field.bulkDataBlocks();
    width = scalar ? 1 : field.width();
    for (int k = 0; k < blocks.size(); ++k) {
      rows += blocks[k].length();
      if (blocks[k].length() > 0 && !scalar) width = blocks[k].width();
    }
    return Hold(f.ctx, field);
  });
  std::vector<py::ssize_t> shape{py::ssize_t(rows)};
  if (!scalar) shape.push_back(width);
  py::array_t<float> values(shape);
  float* out = values.mutable_data();
  Released(*f.ctx, [&] {
    const odb_SequenceFieldBulkData& blocks = derived->get().bulkDataBlocks();
    std::size_t at = 0;
    for (int k = 0; k < blocks.size(); ++k) {
      if (blockMises) {
        std::copy_n(blocks[k].mises(), blocks[k].length(), out + at);
        at += blocks[k].length();
        continue;
      }
      const std::size_t n = std::size_t(blocks[k].length()) * blocks[k].width();
      blocks[k].readData(odb_MutableArrayView<float>(out + at, n));
      at += n;
    }
  });
  return std::move(values);
}

void AddData(Field& f, const py::object& position, Held<odb_Instance>& instance,
             const py::object& labels, const py::object& data, const py::object& conjugate) {
  const auto where = ToEnum<odb_Enum::odb_ResultPositionEnum>(position, "position");
  if (instance.ctx != f.ctx) throw py::value_error("the instance belongs to another database");
  auto l = IntArray(labels, "labels");
  auto d = FloatArray(data, "data");
  std::optional<py::array_t<float, py::array::c_style>> c;
  if (!conjugate.is_none()) c = FloatArray(conjugate, "conjugate_data");
  // Rows are the last axis: (locations, width), (elements, points, width) ...; a flat array is
  // taken in rows of the field's width, and the library says when the counts do not add up.
  long long width =
      d.ndim() >= 2 ? d.shape(d.ndim() - 1) : Ask(f, [](odb_FieldOutput& o) { return o.width(); });
  if (width <= 0) width = 1;
  const long long size = d.size();
  const long long rows = d.ndim() >= 2 ? size / width : (size + width - 1) / width;
  if (rows > INT_MAX || width > INT_MAX || l.size() > INT_MAX)
    throw py::value_error("add_data(): more than 2**31 - 1 rows, labels or components");
  Released(*f.ctx, [&] {
    f.get().addData(where, instance.get(), int(l.size()), odb_ArrayView<int>(l.data(), l.size()),
                    int(rows), int(width), odb_ArrayView<float>(d.data(), d.size()),
                    odb_SectionPoint(),
                    c ? odb_ArrayView<float>(c->data(), c->size()) : odb_ArrayView<float>());
  });
}

std::vector<std::string> Texts(const odb_SequenceString& all) {
  std::vector<std::string> out;
  for (int i = 0; i < all.size(); ++i) out.push_back(S(all[i]));
  return out;
}

}  // namespace

void BindFields(py::module_& m) {
  py::class_<BulkData>(m, "BulkData",
                       "One block of a field: one element type (or the nodes) at one position "
                       "of one instance, as read-only arrays over the library's memory.")
      .def_property_readonly(
          "data",
          [](BulkData& b) {
            return b.View<float>([](odb_FieldBulkData& k) { return k.data(); }, true);
          },
          "(locations, components) float32.")
      .def_property_readonly(
          "conjugate_data",
          [](BulkData& b) {
            return b.View<float>([](odb_FieldBulkData& k) { return k.conjugateData(); }, true);
          },
          "The imaginary parts of complex data, as data; None for real data.")
      .def_property_readonly(
          "element_labels",
          [](BulkData& b) {
            return b.View<int>([](odb_FieldBulkData& k) { return k.elementLabels(); }, false);
          },
          "Per location; -1 where none applies (nodal data).")
      .def_property_readonly(
          "node_labels",
          [](BulkData& b) {
            return b.View<int>([](odb_FieldBulkData& k) { return k.nodeLabels(); }, false);
          },
          "Per location; -1 where none applies (integration-point data).")
      .def_property_readonly(
          "integration_points",
          [](BulkData& b) {
            return b.View<int>([](odb_FieldBulkData& k) { return k.integrationPoints(); }, false);
          },
          "Per location, from 1; -1 where none applies.")
      .def_property_readonly(
          "mises",
          [](BulkData& b) {
            return b.View<float>([](odb_FieldBulkData& k) { return k.mises(); }, false);
          },
          "The Mises stress of each location of tensor data (zeros for other types).")
      .def_property_readonly("element_type",
                             [](BulkData& b) {
                               return Locked(*b.block->ctx,
                                             [&] { return S(b.block->get().baseElementType()); });
                             })
      .def_property_readonly("position",
                             [](BulkData& b) {
                               return Locked(*b.block->ctx,
                                             [&] { return b.block->get().position(); });
                             })
      .def_property_readonly("instance_name",
                             [](BulkData& b) {
                               return Locked(*b.block->ctx,
                                             [&] { return S(b.block->get().instance().name()); });
                             })
      .def_property_readonly("length",
                             [](BulkData& b) {
                               return Locked(*b.block->ctx,
                                             [&] { return b.block->get().length(); });
                             })
      .def_property_readonly(
          "width",
          [](BulkData& b) { return Locked(*b.block->ctx, [&] { return b.block->get().width(); }); })
      .def("__repr__", [](BulkData& b) {
        std::string type, instance;
        odb_Enum::odb_ResultPositionEnum position = odb_Enum::UNDEFINED_POSITION;
        int length = 0, width = 0;
        Locked(*b.block->ctx, [&] {
          const odb_FieldBulkData& k = b.block->get();
          type = S(k.baseElementType());
          instance = S(k.instance().name());
          position = k.position();
          length = k.length();
          width = k.width();
        });
        return Repr("BulkData", (type.empty() ? std::string("nodes") : type) + " " +
                                    EnumName(py::cast(position)) + " of " + Quoted(instance) +
                                    ": " + std::to_string(length) + " x " + std::to_string(width));
      });

  py::class_<Field> field(m, "FieldOutput", "One field variable of a frame (U, S ...).");
  field
      .def_property_readonly(
          "name", [](Field& f) { return Ask(f, [](odb_FieldOutput& o) { return S(o.name()); }); })
      .def_property_readonly(
          "description",
          [](Field& f) { return Ask(f, [](odb_FieldOutput& o) { return S(o.description()); }); })
      .def_property_readonly(
          "type", [](Field& f) { return Ask(f, [](odb_FieldOutput& o) { return o.type(); }); })
      .def_property_readonly(
          "width", [](Field& f) { return Ask(f, [](odb_FieldOutput& o) { return o.width(); }); },
          "Floats per value.")
      .def_property_readonly(
          "component_labels",
          [](Field& f) {
            return Ask(f, [](odb_FieldOutput& o) { return Texts(o.componentLabels()); });
          })
      .def_property_readonly("valid_invariants",
                             [](Field& f) {
                               return Ask(f, [](odb_FieldOutput& o) {
                                 std::vector<odb_Enum::odb_InvariantEnum> out;
                                 const odb_SequenceInvariant all = o.validInvariants();
                                 for (int i = 0; i < all.size(); ++i) out.push_back(all[i]);
                                 return out;
                               });
                             })
      .def_property_readonly(
          "is_orphan",
          [](Field& f) { return Ask(f, [](odb_FieldOutput& o) { return o.isOrphan(); }); },
          "True for computed fields and subsets, which belong to no frame.")
      .def(
          "bulk_data",
          [](Field& f) {
            std::vector<HeldPtr<odb_FieldBulkData>> blocks = Released(*f.ctx, [&] {
              std::vector<HeldPtr<odb_FieldBulkData>> out;
              const odb_SequenceFieldBulkData& all = f.get().bulkDataBlocks();
              for (int k = 0; k < all.size(); ++k) out.push_back(Hold(f.ctx, all[k]));
              return out;
            });
            py::list list;
            for (auto& b : blocks) list.append(BulkData{BlockPtr(std::move(b))});
            return list;
          },
          "The field's blocks, in the order they were first written.")
      .def("values_array", &ValuesArray, py::arg("position") = py::none(),
           py::arg("invariant") = py::none(),
           "Every value of the field (of its subset at `position`; of one `invariant`) as one "
           "array of its own: (values, components) float32, or (values,) for an invariant.")
      .def(
          "get_subset",
          [](Field& f, const py::object& position) {
            const auto where = ToEnum<odb_Enum::odb_ResultPositionEnum>(position, "position");
            return Own(Released(*f.ctx, [&] { return Hold(f.ctx, f.get().getSubset(where)); }));
          },
          py::arg("position"), "The values at `position`, as an orphan field.")
      .def(
          "get_scalar_field",
          [](Field& f, const py::object& invariant) {
            const auto which = ToEnum<odb_Enum::odb_InvariantEnum>(invariant, "invariant");
            return Own(
                Released(*f.ctx, [&] { return Hold(f.ctx, f.get().getScalarField(which)); }));
          },
          py::arg("invariant"), "One invariant of every value, as an orphan SCALAR field.")
      .def("add_data", &AddData, py::arg("position"), py::arg("instance"), py::arg("labels"),
           py::arg("data"), py::arg("conjugate_data") = py::none(),
           "Adds values at `position` of `instance`: node labels for NODAL data, element labels "
           "otherwise; data with one row of the field's width per location ((elements, points, "
           "width) or (locations, width), any contiguous layout).")
      .def("__repr__", [](Field& f) {
        std::string name;
        odb_Enum::odb_DataTypeEnum type = odb_Enum::SCALAR;
        int width = 0;
        Locked(*f.ctx, [&] {
          name = S(f.get().name());
          type = f.get().type();
          width = f.get().width();
        });
        return Repr("FieldOutput", Quoted(name) + " " + EnumName(py::cast(type)) + ", " +
                                       Count(width, "component"));
      });
  BindFieldOperators(m, field);
}

}  // namespace qtvodb
