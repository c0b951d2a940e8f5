// What the subcommands of the odb tool share: the error that ends a request, opening a database
// for reading, finding a step, frame, field or position by what the user typed (with a message
// naming what exists when it is not there), and the names of enumerations as the tool prints them.
#ifndef TOOL_COMMON_H
#define TOOL_COMMON_H

#include <cstddef>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "odb_API.h"

// A request the tool cannot carry out (a missing file, an unknown step...): one line for the
// user, and exit status 2.
class tool_Error : public std::runtime_error {
 public:
  explicit tool_Error(const std::string& what) : std::runtime_error(what) {}
};

inline std::string tool_Str(const odb_String& s) {
  return std::string(s.CStr(), s.Length());
}

// "a, b, c", or "none" for an empty list.
std::string tool_Join(const std::vector<std::string>& names);

// Memory for the bulk reads: it grows to the largest block and stays, and it is never filled, since
// every read overwrites what it covers. (A std::vector resized from a small block back to a large
// one would zero the difference first, which costs as much as reading it.)
template <class T>
class tool_Buffer {
 public:
  // Room for n values, as the view a bulk read fills.
  odb_MutableArrayView<T> view(std::size_t n) {
    if (n > m_capacity) {
      m_data.reset(new T[n]);
      m_capacity = n;
    }
    m_size = n;
    return odb_MutableArrayView<T>(m_data.get(), n);
  }
  T* data() { return m_data.get(); }
  const T* data() const { return m_data.get(); }
  std::size_t size() const { return m_size; }
  T& operator[](std::size_t i) { return m_data[i]; }
  const T& operator[](std::size_t i) const { return m_data[i]; }

 private:
  std::unique_ptr<T[]> m_data;
  std::size_t m_capacity = 0, m_size = 0;
};

// Opens `path` read-only. A missing file, a folder, or a file the library refuses (not a
// database, damaged, of another schema) throws tool_Error naming the path and the reason.
odb_Odb& tool_Open(const std::string& path);

// The step called `name`; tool_Error listing the steps when there is none.
odb_Step tool_FindStep(odb_Odb& odb, const std::string& name);
// Frame `index` of `step` (0 the first, -1 the last); tool_Error giving the range otherwise.
odb_Frame tool_FindFrame(const odb_Step& step, int index);
// The field called `name` of `frame`; tool_Error listing the frame's fields when there is none.
odb_FieldOutput tool_FindField(const odb_Frame& frame, const std::string& name);
// The instance called `name`; tool_Error listing the instances when there is none.
odb_Instance tool_FindInstance(odb_Odb& odb, const std::string& name);

// Names of the step's and frame's contents, in the order the tool lists them.
std::vector<std::string> tool_StepNames(odb_Odb& odb);
std::vector<std::string> tool_FieldNames(const odb_Frame& frame);
std::vector<std::string> tool_InstanceNames(odb_Odb& odb);

// NODAL, INTEGRATION_POINT ...; the number for a position of no name.
std::string tool_PositionName(odb_Enum::odb_ResultPositionEnum position);
// The position named `text` (case-insensitive: "nodal" and "NODAL" alike); false when none is.
bool tool_ParsePosition(const std::string& text, odb_Enum::odb_ResultPositionEnum* position);
std::string tool_TypeName(odb_Enum::odb_DataTypeEnum type);
std::string tool_DomainName(odb_Enum::odb_DomainEnum domain);
std::string tool_DimensionName(odb_Enum::odb_DimensionEnum dimension);

// The shortest text that reads back as the same float ("0.1", "1e-07", "nan", "inf").
std::string tool_FormatFloat(float value);
std::string tool_FormatDouble(double value);

#endif
