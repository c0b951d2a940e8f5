// docs/conventions.md publishes the element library's types and faces; these tests render both
// tables from the library and fail, printing the table to paste, when the document differs.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "store_ElementLibrary.h"

namespace {

const std::string kConventions = std::string(QTVODB_SOURCE_DIR) + "/docs/conventions.md";

// The lines strictly between <!-- NAME:begin --> and <!-- NAME:end -->, or an explanation
// starting with "missing" when the file or a marker is not there.
std::string Between(const std::string& path, const std::string& name) {
  std::ifstream in(path);
  if (!in) return "missing file " + path;
  const std::string begin = "<!-- " + name + ":begin -->", end = "<!-- " + name + ":end -->";
  std::string line, text;
  bool inside = false, closed = false;
  while (std::getline(in, line)) {
    if (line == begin) {
      inside = true;
    } else if (line == end && inside) {
      closed = true;
      break;
    } else if (inside) {
      text += line + "\n";
    }
  }
  return closed ? text : "missing marker lines " + begin + " and " + end + " in " + path;
}

const char* FamilyName(odb_Enum::odb_ElementGeometryClass geometry) {
  switch (geometry) {
    case odb_Enum::GEOMETRY_SOLID:
      return "solid";
    case odb_Enum::GEOMETRY_PLANE_STRESS:
      return "plane stress";
    case odb_Enum::GEOMETRY_PLANE_STRAIN:
      return "plane strain";
    case odb_Enum::GEOMETRY_AXISYMMETRIC:
      return "axisymmetric";
    case odb_Enum::GEOMETRY_SHELL:
      return "shell";
    case odb_Enum::GEOMETRY_MEMBRANE:
      return "membrane";
    case odb_Enum::GEOMETRY_BEAM:
      return "beam";
    case odb_Enum::GEOMETRY_TRUSS:
      return "truss";
    case odb_Enum::GEOMETRY_RIGID:
      return "rigid";
    case odb_Enum::GEOMETRY_SURFACE:
      return "surface";
    case odb_Enum::GEOMETRY_CONNECTOR:
      return "connector";
    default:
      return "?";
  }
}

std::string FaceName(odb_Enum::odb_ElementFaceEnum face) {
  if (face >= odb_Enum::FACE1 && face <= odb_Enum::FACE6) return "FACE" + std::to_string(face);
  if (face == odb_Enum::SIDE1 || face == odb_Enum::SIDE2)
    return "SIDE" + std::to_string(face - odb_Enum::SIDE1 + 1);
  if (face >= odb_Enum::END1 && face <= odb_Enum::END3)
    return "END" + std::to_string(face - odb_Enum::END1 + 1);
  return "?";
}

// "FACE1..FACE6" for a run of numbered faces, else the names one by one; "none" for no faces.
std::string FaceList(const std::vector<store_ElementFace>& faces) {
  if (faces.empty()) return "none";
  if (faces.size() > 2 && faces.front().face == odb_Enum::FACE1)
    return "FACE1..FACE" + std::to_string(faces.back().face);
  std::string text;
  for (const store_ElementFace& f : faces) text += (text.empty() ? "" : ", ") + FaceName(f.face);
  return text;
}

std::string ElementTypeTable() {
  std::ostringstream out;
  out << "| type | family | dimension | nodes | integration points | faces |\n"
      << "|---|---|---|---|---|---|\n";
  for (const store_ElementClass* cls : store_ElementClasses())
    out << "| " << cls->name << " | " << FamilyName(cls->geometry) << " | " << cls->dimension
        << " | " << cls->nodesPerElement << " | " << cls->integrationPoints << " | "
        << FaceList(cls->faces) << " |\n";
  return out.str();
}

bool SameFaces(const std::vector<store_ElementFace>& a, const std::vector<store_ElementFace>& b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i)
    if (a[i].face != b[i].face || a[i].nodes != b[i].nodes) return false;
  return true;
}

// One group of rows per distinct face layout, in order of first use, naming every type that
// shares it.
std::string FaceTable() {
  std::vector<std::pair<std::vector<store_ElementFace>, std::string>> layouts;
  for (const store_ElementClass* cls : store_ElementClasses()) {
    if (cls->faces.empty()) continue;
    auto it = layouts.begin();
    while (it != layouts.end() && !SameFaces(it->first, cls->faces)) ++it;
    if (it == layouts.end())
      layouts.push_back({cls->faces, cls->name});
    else
      it->second += ", " + cls->name;
  }
  std::ostringstream out;
  out << "| types | face | code | nodes |\n|---|---|---|---|\n";
  for (const auto& [faces, types] : layouts)
    for (std::size_t i = 0; i < faces.size(); ++i) {
      out << "| " << (i == 0 ? types : "") << " | " << FaceName(faces[i].face) << " | "
          << faces[i].face << " |";
      for (int node : faces[i].nodes) out << " " << node;
      out << " |\n";
    }
  return out.str();
}

void ExpectDocumented(const std::string& name, const std::string& expected) {
  const std::string actual = Between(kConventions, name);
  EXPECT_EQ(actual, expected) << "docs/conventions.md differs from the element library. Put "
                              << "these lines between <!-- " << name << ":begin --> and <!-- "
                              << name << ":end -->:\n"
                              << expected;
}

TEST(DocsConventions, ElementTypeTableMatchesTheLibrary) {
  ExpectDocumented("element-types", ElementTypeTable());
}

TEST(DocsConventions, FaceTableMatchesTheLibrary) {
  ExpectDocumented("element-faces", FaceTable());
}

}  // namespace
