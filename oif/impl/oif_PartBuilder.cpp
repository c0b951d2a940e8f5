// The part brackets with the part's nodes and elements. The node and element lines are
// formatted when written, straight from the part's stored arrays.
#include <memory>
#include <string>
#include <utility>

#include "odb_Enum.h"
#include "oif_Components.h"
#include "oif_DeckText.h"
#include "store_ElementLibrary.h"
#include "store_Mesh.h"

namespace {

// Most values on one data line of the keyword format.
constexpr int kValuesPerLine = 16;
// Room for one more integer value and its separator: 11 characters and ", ".
constexpr int kIntegerRoom = 13;

// "*Node" and one line per node: the label, then x, y (and z in three-dimensional parts).
class NodeLines : public oif_DeckItem {
 public:
  NodeLines(std::shared_ptr<store_Mesh> mesh, int coordinates)
      : m_mesh(std::move(mesh)), m_coordinates(coordinates) {}
  oif_DeckItem* Copy() const override { return new NodeLines(*this); }
  void Write(utl_Stream& out) const override {
    const std::vector<int>& labels = m_mesh->NodeLabels();
    if (labels.empty()) return;
    const std::vector<float>& xyz = m_mesh->NodeCoordinates();
    out << "*Node";
    out.LineBreak();
    for (std::size_t i = 0; i < labels.size(); ++i) {
      out << labels[i];
      for (int k = 0; k < m_coordinates; ++k) out << ", " << xyz[3 * i + k];
      out.LineBreak();
    }
  }

 private:
  std::shared_ptr<store_Mesh> m_mesh;
  int m_coordinates;
};

// The type name a deck gives elements of `type`: surface elements are all written as "SURF",
// the deck's one type for them; every other type as stored.
std::string DeckType(const std::string& type) {
  const store_ElementClass* cls = store_FindElementClass(type);
  return cls && cls->geometry == odb_Enum::GEOMETRY_SURFACE ? "SURF" : type;
}

// "*Element, type=" per run of blocks of one type, and one line per element: the label, then its
// node labels. A line holds at most sixteen values and breaks before the stream's line width;
// a line that ends in a comma continues on the next.
class ElementLines : public oif_DeckItem {
 public:
  explicit ElementLines(std::shared_ptr<store_Mesh> mesh) : m_mesh(std::move(mesh)) {}
  oif_DeckItem* Copy() const override { return new ElementLines(*this); }
  void Write(utl_Stream& out) const override {
    const std::vector<store_ElementBlock>& blocks = m_mesh->ElementBlocks();
    if (blocks.empty()) return;
    const std::vector<int>& labels = m_mesh->ElementLabels();
    const std::vector<int>& connectivity = m_mesh->Connectivity();
    std::string type;
    for (const store_ElementBlock& block : blocks) {
      if (block.count == 0) continue;
      if (block.type != type) {
        type = block.type;
        out << "*Element, type=" << DeckType(type);
        out.LineBreak();
      }
      const int* nodes = connectivity.data() + block.connectivityStart;
      for (int e = 0; e < block.count; ++e) {
        out << labels[static_cast<std::size_t>(block.first + e)];
        int onLine = 1;
        for (int k = 0; k < block.nodesPerElement; ++k) {
          if (onLine == kValuesPerLine || out.Column() + kIntegerRoom > out.LineWidth()) {
            out << ",";
            out.LineBreak();
            onLine = 0;
          } else {
            out << ", ";
          }
          out << *nodes++;
          ++onLine;
        }
        out.LineBreak();
      }
    }
  }

 private:
  std::shared_ptr<store_Mesh> m_mesh;
};

}  // namespace

void oif_PartBuilder::Prepare() {
  Clear();
  const oif_ModelData& model = Model();
  for (const store_PartRecord& part : model.parts) {
    if (model.writeAssemblyStructure)
      AddPart(part.name, oif_Keyword("*Part, name=" + oif_Name(part.name)));
    auto mesh = std::make_shared<store_Mesh>(model.store, part.id);
    mesh->SetPartName(part.name);
    const int coordinates = part.dimension == odb_Enum::THREE_D ? 3 : 2;
    AddPart(part.name, oif_Item(new NodeLines(mesh, coordinates)));
    AddPart(part.name, oif_Item(new ElementLines(mesh)));
  }
}
