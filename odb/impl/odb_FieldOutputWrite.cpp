// odb_FieldOutput: adding data, with every check made before the first group is written.
#include <algorithm>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "odb_EntityData.h"
#include "odb_EnumMap.h"
#include "odb_FieldData.h"
#include "odb_FieldOutput.h"
#include "odb_Message.h"
#include "odb_StoreWrite.h"
#include "odb_Util.h"
#include "store_ElementLibrary.h"
#include "store_Field.h"
#include "store_Mesh.h"
#include "store_Tensor.h"

namespace {

const char* const kSource = "odb/impl/odb_FieldOutput";

[[noreturn]] void Fail(odb_FieldOutputEnm code, std::initializer_list<odb_String> args, int site) {
  odb_ThrowMessage(odb_CatalogueMessage(code, args), kSource, site);
}

odb_String Number(long n) {
  return odb_String(std::to_string(n).c_str());
}

// One call of addData in flat form. Rows of `data` (and `conjugate`) are `stride` floats apart;
// the sequence form records each row's own length, the bulk form has rows of `stride` floats.
struct Input {
  odb_Enum::odb_ResultPositionEnum position = odb_Enum::NODAL;
  const int* labels = nullptr;
  int labelCount = 0;
  const std::vector<int>* orientationLengths = nullptr;
  const float* data = nullptr;
  int rows = 0;
  int stride = 0;
  const std::vector<int>* rowLengths = nullptr;
  const float* conjugate = nullptr;
  const std::vector<int>* conjugateLengths = nullptr;
  const float* orientations = nullptr;
  int orientationCount = 0;
  int orientationWidth = 0;
  odb_SectionPoint sectionPoint;
};

// The labels of one element type and section category (or all nodes), and where the data of
// each starts in the call's rows.
struct Group {
  odb_String elementType, category;
  int perLabel = 1;
  std::vector<int> labels, firstRows;
  int Locations() const { return static_cast<int>(labels.size()) * perLabel; }
};

bool RowsHave(const Input& in, const std::vector<int>* lengths, const Group& g, int width) {
  for (int first : g.firstRows)
    for (int r = first; r < first + g.perLabel; ++r) {
      const int length = lengths ? (*lengths)[static_cast<std::size_t>(r)] : in.stride;
      if (length != width) return false;
    }
  return true;
}

// The checks of the data type for one group (the width of its rows and orientations).
void CheckType(const odb_FieldData& field, const Input& in, const Group& g, int& width) {
  switch (field.type) {
    case odb_Enum::SCALAR:
      if (!RowsHave(in, in.rowLengths, g, 1)) Fail(odb_FieldOutput_SCALAR_LENGTH, {}, 90);
      width = 1;
      return;
    case odb_Enum::VECTOR:
    case odb_Enum::MATRIX: {
      width = field.Width();
      if (width == 0) width = in.rowLengths && !in.rowLengths->empty() ? (*in.rowLengths)[0] : in.stride;
      if (!RowsHave(in, in.rowLengths, g, width) ||
          (in.conjugate && !RowsHave(in, in.conjugateLengths, g, width)))
        odb_ThrowMessage(odb_CatalogueMessage(odb_SubField_ITEM_LENGTH, {Number(width)}),
                         "odb/impl/odb_SubField", 96);
      return;
    }
    case odb_Enum::TENSOR_3D_FULL:
    case odb_Enum::TENSOR_3D_PLANAR:
    case odb_Enum::TENSOR_3D_SURFACE:
    case odb_Enum::TENSOR_2D_PLANAR:
    case odb_Enum::TENSOR_2D_SURFACE:
      width = store_TensorComponentCount(field.type);
      if (!RowsHave(in, in.rowLengths, g, width) ||
          (in.conjugate && !RowsHave(in, in.conjugateLengths, g, width)))
        Fail(odb_FieldOutput_TENSOR_LENGTH, {}, 108);
      if (in.orientationCount != 0 && in.orientationCount != 1 && in.orientationCount != in.rows)
        Fail(odb_FieldOutput_CSYS_LENGTH, {}, 110);
      return;
    default:
      Fail(odb_FieldOutput_BAD_TYPE, {}, 113);
  }
}

// The composed message of a group whose number of rows is wrong.
[[noreturn]] void FailLength(const Group& g, odb_Enum::odb_ResultPositionEnum position, int expected,
                             int given) {
  odb_String text = odb_CatalogueMessage(odb_FieldOutput_LENGTH, {Number(expected), Number(given)});
  text += " ";
  if (position == odb_Enum::NODAL) {
    text += odb_CatalogueMessage(odb_FieldOutput_NODAL_FAILED);
  } else {
    text += odb_CatalogueMessage(odb_FieldOutput_ELEMENT_FAILED, {g.elementType});
    if (position == odb_Enum::INTEGRATION_POINT)
      text += odb_CatalogueMessage(odb_FieldOutput_PER_POINT, {Number(g.perLabel)});
    else if (position == odb_Enum::ELEMENT_NODAL)
      text += odb_CatalogueMessage(odb_FieldOutput_PER_NODE, {Number(g.perLabel)});
    else
      text += odb_CatalogueMessage(odb_FieldOutput_PER_ELEMENT);
  }
  odb_ThrowMessage(text, kSource, 133);
}

// The groups of a call: labels resolved against the instance's mesh, split by element type and
// section category in order of first appearance; throws for labels the mesh lacks.
std::vector<Group> Split(const Input& in, odb_MeshData& meshData) {
  store_Mesh& mesh = *meshData.mesh;
  const bool nodal = in.position == odb_Enum::NODAL;
  std::vector<Group> groups;
  if (nodal) groups.emplace_back();
  std::map<std::pair<std::string, std::string>, std::size_t> byKey;
  // The group of the element block met last: labels come mostly block by block.
  const store_ElementBlock* lastBlock = nullptr;
  std::size_t lastGroup = 0;
  int row = 0;
  for (int k = 0; k < in.labelCount; ++k) {
    const int label = in.labels[k];
    const int at = nodal ? mesh.NodePosition(label) : mesh.ElementPosition(label);
    if (at < 0) Fail(odb_FieldOutput_UNDEFINED_LABELS, {}, 150);
    std::size_t gi = 0;
    if (!nodal && &mesh.BlockOf(at) == lastBlock) {
      gi = lastGroup;
    } else if (!nodal) {
      const store_ElementBlock& block = mesh.BlockOf(at);
      auto key = std::make_pair(block.type, block.sectionCategory);
      auto found = byKey.find(key);
      if (found == byKey.end()) {
        Group g;
        g.elementType = odb_FromText(block.type);
        g.category = odb_FromText(block.sectionCategory);
        const store_ElementClass cls = store_ElementClassOf(block.type, block.nodesPerElement);
        g.perLabel = in.position == odb_Enum::INTEGRATION_POINT ? cls.integrationPoints
                     : in.position == odb_Enum::ELEMENT_NODAL   ? block.nodesPerElement
                                                                : 1;
        found = byKey.emplace(key, groups.size()).first;
        groups.push_back(std::move(g));
      }
      gi = found->second;
      lastBlock = &block;
      lastGroup = gi;
    }
    Group& g = groups[gi];
    g.labels.push_back(label);
    g.firstRows.push_back(row);
    row += g.perLabel;
  }
  return groups;
}

// Refuses a label given twice in the call, which would be read back as two values of one node
// or element at the same place.
void CheckRepeats(const Input& in, store_Mesh& mesh, const odb_String& instance) {
  const bool nodal = in.position == odb_Enum::NODAL;
  const std::size_t n = static_cast<std::size_t>(in.labelCount);
  const std::ptrdiff_t at = nodal ? mesh.FirstRepeatedNode(in.labels, n)
                                  : mesh.FirstRepeatedElement(in.labels, n);
  if (at >= 0)
    Fail(odb_FieldOutput_REPEATED_LABEL,
         {nodal ? "Node" : "Element", Number(in.labels[at]),
          odb_ResultPositionLabel(in.position), instance},
         180);
}

// Refuses a section point that the elements' section categories do not define.
void CheckSectionPoint(const Input& in, const std::vector<Group>& groups, odb_MeshData& mesh) {
  const int number = in.sectionPoint.number();
  if (number < 0 || in.position == odb_Enum::NODAL) return;
  long with = 0, without = 0;
  for (const Group& g : groups) {
    const odb_SectionCategory category =
        mesh.categories && !g.category.Empty() ? mesh.categories(g.category) : odb_SectionCategory();
    const bool defined = !category.isEmpty() && category.hasSectionPoint(number);
    (defined ? with : without) += static_cast<long>(g.labels.size());
  }
  if (with == 0) Fail(odb_FieldOutput_SECTION_POINT_NUMBER, {Number(number)}, 190);
  if (without > 0) Fail(odb_FieldOutput_SECTION_POINT_SOME, {}, 191);
}

// The rows of a group gathered from the call (`width` of the `stride` floats of each row).
std::vector<float> Gather(const float* rows, int stride, const Group& g, int width) {
  std::vector<float> out;
  out.reserve(static_cast<std::size_t>(g.Locations()) * width);
  for (int first : g.firstRows)
    for (int r = first; r < first + g.perLabel; ++r)
      out.insert(out.end(), rows + static_cast<std::size_t>(r) * stride,
                 rows + static_cast<std::size_t>(r) * stride + width);
  return out;
}

// The orientation of each location of a group: one for all, or each row's own.
std::vector<float> GatherOrientations(const Input& in, const Group& g) {
  if (in.orientationCount != 1) return Gather(in.orientations, in.orientationWidth, g, in.orientationWidth);
  std::vector<float> out;
  for (int i = 0; i < g.Locations(); ++i)
    out.insert(out.end(), in.orientations, in.orientations + in.orientationWidth);
  return out;
}

// The sub-field that a group's block joins, made when the field has none yet.
std::shared_ptr<odb_SubFieldData> SubFieldFor(odb_FieldData& field, const odb_Instance& instance,
                                              const store_FieldBlockRecord& b) {
  for (const auto& sub : field.subFields)
    if (sub->Holds(b)) return sub;
  auto sub = odb_SubFieldData::FromBlock(b, field.type, instance, field.store);
  field.subFields.push_back(sub);
  return sub;
}

void Write(odb_FieldData& field, const odb_Instance& instance, const Input& in) {
  store_Database& db =
      odb_WritableStore(field.store, "The field output belongs to no database.", kSource, 240);
  const odb_Enum::odb_DataTypeEnum type = field.type;
  if (in.orientationCount > 0 &&
      (type == odb_Enum::SCALAR || type == odb_Enum::VECTOR || type == odb_Enum::MATRIX))
    Fail(odb_FieldOutput_TRANSFORM_SCALAR, {}, 244);
  bool orientationsAlike = in.orientationWidth == 2 || in.orientationWidth == 4;
  if (in.orientationLengths)
    for (int length : *in.orientationLengths) orientationsAlike &= length == in.orientationWidth;
  if (in.orientationCount > 0 && !orientationsAlike)
    odb_ThrowMessage("Each coordinate system must be given by 2 or 4 floats, all alike.", kSource,
                     249);
  if (!odb_IsFieldPosition(in.position)) Fail(odb_FieldOutput_BAD_POSITION, {}, 253);
  odb_MeshData& mesh = *odb_DiscreteEntityAccess::Data(instance)->mesh;
  const std::vector<Group> groups = Split(in, mesh);
  CheckRepeats(in, *mesh.mesh, instance.name());
  CheckSectionPoint(in, groups, mesh);
  field.ReadBlocks();
  odb_String setName("api_set ");
  setName += Number(store_StepFieldBlockCount(db, field.stepId));

  const int factor = in.conjugate ? 2 : 1;
  int written = 0;
  for (const Group& g : groups) {
    const int expected = g.Locations();
    int given = in.rows;
    if (groups.size() > 1) {  // the rows that reach this group
      given = 0;
      for (int first : g.firstRows) given += first + g.perLabel <= in.rows ? g.perLabel : 0;
    }
    if (given != expected) FailLength(g, in.position, factor * expected, factor * given);
    int width = 0;
    CheckType(field, in, g, width);

    store_FieldBlockRecord b;
    b.position = in.position;
    b.instance = odb_ToText(instance.name());
    b.elementType = odb_ToText(g.elementType);
    b.sectionCategory = odb_ToText(g.category);
    b.sectionPoint = in.sectionPoint.number();
    b.sectionPointDescription = odb_ToText(in.sectionPoint.description());
    b.setName = odb_ToText(setName);
    b.count = static_cast<int>(g.labels.size());
    b.perLabel = g.perLabel;
    b.width = width;
    b.orientationWidth = in.orientationCount ? in.orientationWidth : 0;
    b.labels = db.PutArray("field labels", g.labels.data(), g.labels.size() * sizeof(int));
    const std::size_t bytes = static_cast<std::size_t>(expected) * width * sizeof(float);
    // One group of rows of exactly `width` floats is written straight from the caller's array.
    const bool direct = groups.size() == 1 && in.stride == width;
    if (direct) {
      b.data = db.PutArray("field data", in.data, bytes);
      if (in.conjugate) b.conjugate = db.PutArray("field conjugate data", in.conjugate, bytes);
    } else {
      b.data = db.PutArray("field data", Gather(in.data, in.stride, g, width).data(), bytes);
      if (in.conjugate)
        b.conjugate = db.PutArray("field conjugate data",
                                  Gather(in.conjugate, in.stride, g, width).data(), bytes);
    }
    if (b.orientationWidth) {
      const std::vector<float> o = GatherOrientations(in, g);
      b.orientation = db.PutArray("field orientation", o.data(), o.size() * sizeof(float));
    }
    store_AddFieldBlock(db, field.id, b);
    SubFieldFor(field, instance, b)->AddBlock(b);
    field.Changed();
    written += expected;
  }
  if (written != in.rows) Fail(odb_FieldOutput_NOT_PROCESSED, {Number(written), Number(in.rows)}, 300);
}

// The instance of this database named as `instance` is; throws when the assembly has none.
odb_Instance FindInstance(odb_FieldData& field, const odb_Instance& instance) {
  if (field.orphan) Fail(odb_FieldOutput_ORPHAN_WRITE, {}, 305);
  const odb_String name = odb_DiscreteEntityAccess::Data(instance) ? instance.name() : odb_String();
  std::shared_ptr<odb_AssemblyData> assembly = field.assembly ? field.assembly() : nullptr;
  if (assembly) assembly->ReadInstances();
  if (!assembly || !assembly->instances.isMember(name))
    Fail(odb_FieldOutput_NO_INSTANCE, {name}, 310);
  return assembly->instances.get(name);
}

// Rows of a sequence of sequences as one run of `stride` floats each: short rows are padded,
// longer ones cut (the checks refuse them by their recorded length). A `stride` of 0 becomes the
// longest row.
std::vector<float> Flatten(const odb_SequenceSequenceFloat& rows, int& stride,
                           std::vector<int>& lengths) {
  lengths.resize(static_cast<std::size_t>(rows.size()));
  int longest = 0;
  for (int r = 0; r < rows.size(); ++r) {
    lengths[r] = rows[r].size();
    longest = std::max(longest, lengths[r]);
  }
  if (stride == 0) stride = longest;
  std::vector<float> flat(static_cast<std::size_t>(rows.size()) * stride, 0.0f);
  for (int r = 0; r < rows.size(); ++r)
    for (int c = 0; c < lengths[r] && c < stride; ++c)
      flat[static_cast<std::size_t>(r) * stride + c] = rows[r][c];
  return flat;
}

}  // namespace

void odb_FieldOutput::addData(odb_Enum::odb_ResultPositionEnum position,
                              const odb_Instance& instance, const odb_SequenceInt& labels,
                              const odb_SequenceSequenceFloat& data,
                              const odb_SectionPoint& sectionPoint,
                              const odb_SequenceSequenceFloat& localCoordSystem,
                              const odb_SequenceSequenceFloat& conjugateData) {
  const odb_Instance target = FindInstance(*m_data, instance);
  if (!conjugateData.isEmpty() && conjugateData.size() != data.size())
    Fail(odb_FieldOutput_CONJUGATE_LENGTH, {}, 340);
  Input in;
  in.position = position;
  const std::vector<int> labelRun = odb_ToInts(labels);
  in.labels = labelRun.data();
  in.labelCount = static_cast<int>(labelRun.size());
  std::vector<int> rowLengths, conjugateLengths, orientationLengths;
  const std::vector<float> rows = Flatten(data, in.stride, rowLengths);
  in.data = rows.data();
  in.rows = data.size();
  in.rowLengths = &rowLengths;
  std::vector<float> conjugate;
  if (!conjugateData.isEmpty()) {
    int stride = in.stride;
    conjugate = Flatten(conjugateData, stride, conjugateLengths);
    in.conjugate = conjugate.data();
    in.conjugateLengths = &conjugateLengths;
  }
  std::vector<float> orientations;
  if (!localCoordSystem.isEmpty()) {
    orientations = Flatten(localCoordSystem, in.orientationWidth, orientationLengths);
    in.orientationLengths = &orientationLengths;
    in.orientations = orientations.data();
    in.orientationCount = localCoordSystem.size();
  }
  in.sectionPoint = sectionPoint;
  Write(*m_data, target, in);
}

void odb_FieldOutput::addData(odb_Enum::odb_ResultPositionEnum position,
                              const odb_Instance& instance, int labelCount, const int* labels,
                              int locationCount, int width, const float* data,
                              const odb_SectionPoint& sectionPoint, const float* conjugateData,
                              int orientationCount, int orientationWidth,
                              const float* orientations) {
  const odb_Instance target = FindInstance(*m_data, instance);
  if (labelCount < 0 || locationCount < 0 || width < 0 || orientationCount < 0 ||
      (labelCount > 0 && !labels))
    odb_ThrowMessage("addData() was given a negative count or no labels.", kSource, 383);
  if (locationCount > 0 && !data) Fail(odb_FieldOutput_FEW_DATA, {}, 385);
  if (orientationCount > 0 && !orientations) Fail(odb_FieldOutput_FEW_CSYS, {}, 386);
  Input in;
  in.position = position;
  in.labels = labels;
  in.labelCount = labelCount;
  in.data = data;
  in.rows = locationCount;
  in.stride = width;
  in.conjugate = conjugateData;
  in.orientations = orientations;
  in.orientationCount = orientationCount;
  in.orientationWidth = orientationWidth;
  in.sectionPoint = sectionPoint;
  Write(*m_data, target, in);
}
