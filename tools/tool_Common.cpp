#include "tool_Common.h"

#include <cctype>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <system_error>

std::string tool_Join(const std::vector<std::string>& names) {
  if (names.empty()) return "none";
  std::string text;
  for (const std::string& n : names) {
    if (!text.empty()) text += ", ";
    text += n;
  }
  return text;
}

odb_Odb& tool_Open(const std::string& path) {
  std::error_code error;
  const auto status = std::filesystem::status(path, error);
  if (!std::filesystem::exists(status))
    throw tool_Error("cannot open \"" + path + "\": no such file");
  if (std::filesystem::is_directory(status))
    throw tool_Error("cannot open \"" + path + "\": it is a folder, not a database file");
  try {
    return openOdb(odb_String(path.c_str()), true);
  } catch (const odb_Exception& e) {
    throw tool_Error("cannot open \"" + path + "\": " + tool_Str(e.JournalMessage()));
  }
}

std::vector<std::string> tool_StepNames(odb_Odb& odb) {
  std::vector<std::string> names;
  for (odb_StepRepositoryIT it(odb.steps()); !it.isDone(); it.next())
    names.push_back(tool_Str(it.currentKey()));
  return names;
}

std::vector<std::string> tool_FieldNames(const odb_Frame& frame) {
  std::vector<std::string> names;
  for (odb_FieldOutputRepositoryIT it(frame.fieldOutputs()); !it.isDone(); it.next())
    names.push_back(tool_Str(it.currentKey()));
  return names;
}

std::vector<std::string> tool_InstanceNames(odb_Odb& odb) {
  std::vector<std::string> names;
  for (odb_InstanceRepositoryIT it(odb.rootAssembly().instances()); !it.isDone(); it.next())
    names.push_back(tool_Str(it.currentKey()));
  return names;
}

odb_Step tool_FindStep(odb_Odb& odb, const std::string& name) {
  if (!odb.steps().isMember(name.c_str()))
    throw tool_Error("no step \"" + name + "\"; the steps are: " + tool_Join(tool_StepNames(odb)));
  return odb.steps()[name.c_str()];
}

odb_Frame tool_FindFrame(const odb_Step& step, int index) {
  const int count = step.frames().size();
  const int i = index < 0 ? count + index : index;
  if (i < 0 || i >= count) {
    const std::string name = tool_Str(step.name());
    if (count == 0)
      throw tool_Error("no frame " + std::to_string(index) + " in step \"" + name +
                       "\": the step has no frames");
    throw tool_Error("no frame " + std::to_string(index) + " in step \"" + name + "\": it has " +
                     std::to_string(count) + " frames, 0 to " + std::to_string(count - 1) +
                     " (or -1 for the last)");
  }
  return step.frames(i);
}

odb_FieldOutput tool_FindField(const odb_Frame& frame, const std::string& name) {
  if (!frame.fieldOutputs().isMember(name.c_str()))
    throw tool_Error("no field \"" + name + "\" in frame " + std::to_string(frame.frameIndex()) +
                     "; its fields are: " + tool_Join(tool_FieldNames(frame)));
  return frame.fieldOutputs()[name.c_str()];
}

odb_Instance tool_FindInstance(odb_Odb& odb, const std::string& name) {
  if (!odb.rootAssembly().instances().isMember(name.c_str()))
    throw tool_Error("no instance \"" + name +
                     "\"; the instances are: " + tool_Join(tool_InstanceNames(odb)));
  return odb.rootAssembly().instances()[name.c_str()];
}

namespace {

const char* const kPositions[] = {"UNDEFINED_POSITION", "NODAL",           "ELEMENT_NODAL",
                                  "INTEGRATION_POINT",  "CENTROID",        "ELEMENT_FACE",
                                  "WHOLE_ELEMENT",      "WHOLE_REGION",    "WHOLE_PART_INSTANCE",
                                  "WHOLE_MODEL",        "GENERAL_PARTICLE"};
const int kPositionCount = sizeof(kPositions) / sizeof(kPositions[0]);

}  // namespace

std::string tool_PositionName(odb_Enum::odb_ResultPositionEnum position) {
  const int p = static_cast<int>(position);
  return p >= 0 && p < kPositionCount ? kPositions[p] : std::to_string(p);
}

bool tool_ParsePosition(const std::string& text, odb_Enum::odb_ResultPositionEnum* position) {
  std::string upper;
  for (char c : text) upper += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  for (int p = 1; p < kPositionCount; ++p)
    if (upper == kPositions[p]) {
      *position = static_cast<odb_Enum::odb_ResultPositionEnum>(p);
      return true;
    }
  return false;
}

std::string tool_TypeName(odb_Enum::odb_DataTypeEnum type) {
  static const char* const names[] = {
      "BOOLEAN",          "INTEGER",           "SCALAR",           "VECTOR",
      "MATRIX",           "TENSOR_3D_FULL",    "TENSOR_3D_PLANAR", "TENSOR_3D_SURFACE",
      "TENSOR_2D_PLANAR", "TENSOR_2D_SURFACE", "QUATERNION_3D",    "QUATERNION_2D"};
  const int t = static_cast<int>(type);
  return t >= 0 && t < 12 ? names[t] : "Unknown Type";
}

std::string tool_DomainName(odb_Enum::odb_DomainEnum domain) {
  switch (domain) {
    case odb_Enum::TIME:
      return "TIME";
    case odb_Enum::FREQUENCY:
      return "FREQUENCY";
    case odb_Enum::ARC_LENGTH:
      return "ARC_LENGTH";
    case odb_Enum::MODAL:
      return "MODAL";
  }
  return "UNKNOWN";
}

std::string tool_DimensionName(odb_Enum::odb_DimensionEnum dimension) {
  switch (dimension) {
    case odb_Enum::THREE_D:
      return "THREE_D";
    case odb_Enum::TWO_D_PLANAR:
      return "TWO_D_PLANAR";
    case odb_Enum::AXISYMMETRIC:
      return "AXISYMMETRIC";
    case odb_Enum::UNKNOWN_DIMENSION:
      break;
  }
  return "UNKNOWN_DIMENSION";
}

std::string tool_FormatFloat(float value) {
  if (std::isnan(value)) return "nan";
  if (std::isinf(value)) return value > 0 ? "inf" : "-inf";
  char text[32];
  for (int digits = 6; digits <= 9; ++digits) {
    std::snprintf(text, sizeof text, "%.*g", digits, static_cast<double>(value));
    if (std::strtof(text, nullptr) == value) break;
  }
  return text;
}

std::string tool_FormatDouble(double value) {
  if (std::isnan(value)) return "nan";
  if (std::isinf(value)) return value > 0 ? "inf" : "-inf";
  char text[40];
  for (int digits = 6; digits <= 17; ++digits) {
    std::snprintf(text, sizeof text, "%.*g", digits, value);
    if (std::strtod(text, nullptr) == value) break;
  }
  return text;
}
