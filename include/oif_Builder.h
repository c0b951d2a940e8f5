// oif_Builder: writes a database's model as a keyword input deck.
//
// The deck is written by fifteen components (parts, instances, steps, sets and surfaces, section
// assignments, amplitudes, materials, datum systems, constraints, connectors, boundary
// conditions, loads, predefined fields, interactions, and the closing keywords), in five
// sections: parts, the assembly header with the instances, the assembly level, the model level,
// and the steps with their load cases. docs/input-deck.md describes the vocabulary of each.
//
// Usage: oif_ModelInfo info(odb); oif_Builder builder(info); builder.WriteInputFile("job.inp");
// The builder keeps a share of the model description; one thread at a time.
#ifndef OIF_BUILDER_H
#define OIF_BUILDER_H

#include "cow_String.h"
#include "odb_Export.h"
#include "oif_ModelInfo.h"
#include "uti_SharedPtr.h"

class utl_Stream;
struct oif_BuilderData;
struct oif_ComponentList;

class QTVODB_EXPORT oif_Builder {
 public:
  explicit oif_Builder(oif_ModelInfo& info);
  ~oif_Builder();
  oif_Builder(const oif_Builder&) = delete;
  oif_Builder& operator=(const oif_Builder&) = delete;

  // Writes the whole deck to `fileName` (created or truncated). False, with nothing written,
  // when the file cannot be opened; true otherwise. Each call gathers the model afresh.
  bool WriteInputFile(const cow_String& fileName);

 private:
  void WritePartDefinitions(utl_Stream& out, const oif_ComponentList& components);
  void WritePartInstanceDefinitions(utl_Stream& out, const oif_ComponentList& components);
  void WriteAssemblyDefinitions(utl_Stream& out, const oif_ComponentList& components);
  void WriteOtherModelDefinitions(utl_Stream& out, const oif_ComponentList& components);
  void WriteStepDefinitions(utl_Stream& out, const oif_ComponentList& components);

  std::unique_ptr<oif_BuilderData> m_data;
};

#endif
