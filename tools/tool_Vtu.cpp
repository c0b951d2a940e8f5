#include "tool_Vtu.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

#include "tool_Common.h"

namespace {

// VTK's cell type numbers.
enum : std::uint8_t {
  kLine = 3,
  kTriangle = 5,
  kQuad = 9,
  kTetra = 10,
  kHexahedron = 12,
  kWedge = 13,
  kQuadraticEdge = 21,
  kQuadraticTriangle = 22,
  kQuadraticQuad = 23,
  kQuadraticTetra = 24,
  kQuadraticHexahedron = 25,
  kQuadraticWedge = 26
};

std::vector<int> InOrder(int n) {
  std::vector<int> order(static_cast<std::size_t>(n));
  for (int i = 0; i < n; ++i) order[static_cast<std::size_t>(i)] = i;
  return order;
}

}  // namespace

tool_VtkCell tool_VtkCellOf(odb_Enum::odb_ElementGeometryClass geometry, int nodes) {
  switch (geometry) {
    case odb_Enum::GEOMETRY_SOLID:
      // Tetrahedra, hexahedra and their mid-side nodes are numbered as VTK numbers them. A
      // wedge's first triangle turns the other way in VTK (its normal points away from the
      // second triangle), so both triangles and their edges are walked backwards.
      if (nodes == 4) return {kTetra, InOrder(4)};
      if (nodes == 10) return {kQuadraticTetra, InOrder(10)};
      if (nodes == 8) return {kHexahedron, InOrder(8)};
      if (nodes == 20) return {kQuadraticHexahedron, InOrder(20)};
      if (nodes == 6) return {kWedge, {0, 2, 1, 3, 5, 4}};
      if (nodes == 15) return {kQuadraticWedge, {0, 2, 1, 3, 5, 4, 8, 7, 6, 11, 10, 9, 12, 14, 13}};
      break;
    case odb_Enum::GEOMETRY_PLANE_STRESS:
    case odb_Enum::GEOMETRY_PLANE_STRAIN:
    case odb_Enum::GEOMETRY_AXISYMMETRIC:
    case odb_Enum::GEOMETRY_SHELL:
    case odb_Enum::GEOMETRY_MEMBRANE:
    case odb_Enum::GEOMETRY_SURFACE:
    case odb_Enum::GEOMETRY_RIGID:
      if (nodes == 3) return {kTriangle, InOrder(3)};
      if (nodes == 6) return {kQuadraticTriangle, InOrder(6)};
      if (nodes == 4) return {kQuad, InOrder(4)};
      if (nodes == 8) return {kQuadraticQuad, InOrder(8)};
      if (nodes == 2 && geometry == odb_Enum::GEOMETRY_RIGID) return {kLine, InOrder(2)};
      break;
    case odb_Enum::GEOMETRY_BEAM:
    case odb_Enum::GEOMETRY_TRUSS:
    case odb_Enum::GEOMETRY_CONNECTOR:
      // A three-node line has its middle node second; VTK puts it last.
      if (nodes == 2) return {kLine, InOrder(2)};
      if (nodes == 3) return {kQuadraticEdge, {0, 2, 1}};
      break;
    default:
      break;
  }
  return {};
}

std::string tool_XmlEscape(const std::string& s) {
  std::string out;
  for (char c : s) {
    switch (c) {
      case '&':
        out += "&amp;";
        break;
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      case '"':
        out += "&quot;";
        break;
      default:
        out += c;
    }
  }
  return out;
}

namespace {

struct Closer {
  void operator()(std::FILE* f) const { std::fclose(f); }
};

// One array of the appended section: where it starts and what it holds.
struct Appended {
  const void* data;
  std::uint64_t bytes;
};

class Writer {
 public:
  explicit Writer(const std::string& path) : m_path(path), m_file(std::fopen(path.c_str(), "wb")) {
    if (!m_file) Fail();
  }
  void Write(const void* data, std::size_t bytes) {
    if (bytes && std::fwrite(data, 1, bytes, m_file.get()) != bytes) Fail();
    m_written += bytes;
  }
  void Text(const std::string& s) { Write(s.data(), s.size()); }
  std::uint64_t Close() {
    if (std::fclose(m_file.release()) != 0) Fail();
    return m_written;
  }

 private:
  [[noreturn]] void Fail() {
    throw tool_Error("cannot write \"" + m_path + "\": " + std::strerror(errno));
  }
  std::string m_path;
  std::unique_ptr<std::FILE, Closer> m_file;
  std::uint64_t m_written = 0;
};

std::string DataArray(const std::string& type, const std::string& name, int components,
                      std::uint64_t offset) {
  std::string text =
      "        <DataArray type=\"" + type + "\" Name=\"" + tool_XmlEscape(name) + "\"";
  if (components != 1) text += " NumberOfComponents=\"" + std::to_string(components) + "\"";
  return text + " format=\"appended\" offset=\"" + std::to_string(offset) + "\"/>\n";
}

}  // namespace

std::uint64_t tool_WriteVtu(const std::string& path, const tool_VtuMesh& mesh,
                            const std::vector<const tool_VtuArray*>& pointData,
                            const std::vector<const tool_VtuArray*>& cellData) {
  std::vector<Appended> blocks;
  std::uint64_t offset = 0;
  // Each appended array takes its 8-byte size and its bytes.
  const auto add = [&](const void* data, std::uint64_t bytes) {
    const std::uint64_t at = offset;
    blocks.push_back({data, bytes});
    offset += sizeof(std::uint64_t) + bytes;
    return at;
  };
  std::string xml =
      "<?xml version=\"1.0\"?>\n"
      "<VTKFile type=\"UnstructuredGrid\" version=\"1.0\" byte_order=\"LittleEndian\" "
      "header_type=\"UInt64\">\n"
      "  <UnstructuredGrid>\n"
      "    <Piece NumberOfPoints=\"" +
      std::to_string(mesh.Points()) + "\" NumberOfCells=\"" + std::to_string(mesh.Cells()) +
      "\">\n";
  xml += "      <PointData>\n";
  for (const tool_VtuArray* a : pointData)
    xml += DataArray("Float32", a->name, a->components,
                     add(a->values.data(), a->values.size() * sizeof(float)));
  xml += "      </PointData>\n      <CellData>\n";
  for (const tool_VtuArray* a : cellData)
    xml += DataArray("Float32", a->name, a->components,
                     add(a->values.data(), a->values.size() * sizeof(float)));
  xml += "      </CellData>\n      <Points>\n";
  xml += DataArray("Float32", "Points", 3, add(mesh.points.data(), mesh.points.size() * 4));
  xml += "      </Points>\n      <Cells>\n";
  xml += DataArray("Int32", "connectivity", 1,
                   add(mesh.connectivity.data(), mesh.connectivity.size() * 4));
  xml += DataArray("Int32", "offsets", 1, add(mesh.offsets.data(), mesh.offsets.size() * 4));
  xml += DataArray("UInt8", "types", 1, add(mesh.types.data(), mesh.types.size()));
  xml +=
      "      </Cells>\n"
      "    </Piece>\n"
      "  </UnstructuredGrid>\n"
      "  <AppendedData encoding=\"raw\">\n   _";
  Writer out(path);
  out.Text(xml);
  for (const Appended& b : blocks) {
    out.Write(&b.bytes, sizeof b.bytes);
    out.Write(b.data, b.bytes);
  }
  out.Text("\n  </AppendedData>\n</VTKFile>\n");
  return out.Close();
}

void tool_WritePvd(const std::string& path,
                   const std::vector<std::pair<double, std::string>>& series) {
  std::string xml =
      "<?xml version=\"1.0\"?>\n"
      "<VTKFile type=\"Collection\" version=\"0.1\" byte_order=\"LittleEndian\">\n"
      "  <Collection>\n";
  for (const auto& [time, file] : series)
    xml += "    <DataSet timestep=\"" + tool_FormatDouble(time) +
           "\" group=\"\" part=\"0\" file=\"" + tool_XmlEscape(file) + "\"/>\n";
  xml += "  </Collection>\n</VTKFile>\n";
  Writer out(path);
  out.Text(xml);
  out.Close();
}
