#include "oif_Builder.h"

#include <fstream>
#include <string>

#include "oif_Components.h"
#include "oif_DeckText.h"
#include "oif_ModelData.h"
#include "utl_Stream.h"

namespace {

using oif_ComponentHandle = cow_ArrayCOW<oif_BuilderComponent, cow_Virtual<oif_BuilderComponent>>;

void WriteItems(utl_Stream& out, const oif_ItemList& items) {
  for (int i = 0; i < items.Size(); ++i) items.ConstGet(i)->Write(out);
}

// A header of the frame: "**", "** WORD", "**".
void WriteHeader(utl_Stream& out, const char* word) {
  out << "**\n** " << word << "\n**\n";
}

}  // namespace

struct oif_ComponentList {
  cow_List<oif_ComponentHandle> list;
};

struct oif_BuilderData {
  // The builder's own share of the model description; the components refer to it.
  oif_ModelInfo info;
  std::string assemblyName;
  bool writeAssemblyStructure;
  // Constructed in this order, destroyed in reverse; the order has no effect on the output.
  oif_PartBuilder part{info};
  oif_InstanceBuilder instance{info};
  oif_StepBuilder step{info};
  oif_RegionBuilder region{info};
  oif_PartAttributesBuilder partAttributes{info};
  oif_AmplitudeBuilder amplitude{info};
  oif_MaterialBuilder material{info};
  oif_TransformBuilder transform{info};
  oif_ConstraintBuilder constraint{info};
  oif_ConnectorBuilder connector{info};
  oif_BoundaryConditionBuilder boundaryCondition{info};
  oif_LoadBuilder load{info};
  oif_FieldBuilder field{info};
  oif_InteractionBuilder interaction{info};
  oif_EndKeywordBuilder endKeyword{info};

  explicit oif_BuilderData(const oif_ModelInfo& modelInfo)
      : info(modelInfo),
        assemblyName(oif_ModelInfoAccess::Data(modelInfo).assemblyName),
        writeAssemblyStructure(modelInfo.writeAssemblyStructure()) {}
  const oif_ModelData& Model() const { return oif_ModelInfoAccess::Data(info); }
};

oif_Builder::oif_Builder(oif_ModelInfo& info) : m_data(new oif_BuilderData(info)) {}

oif_Builder::~oif_Builder() = default;

bool oif_Builder::WriteInputFile(const cow_String& fileName) {
  std::ofstream file(fileName.CStr(), std::ios::out | std::ios::trunc | std::ios::binary);
  if (!file) return false;
  utl_Stream out(file, oif_kLineWidth, oif_kUpperExponent, oif_kLowerExponent);
  oif_BuilderData& d = *m_data;

  oif_BuilderComponent* const prepareOrder[] = {
      &d.part,       &d.material,       &d.instance,          &d.step,
      &d.region,     &d.partAttributes, &d.amplitude,         &d.transform,
      &d.constraint, &d.connector,      &d.boundaryCondition, &d.load,
      &d.field,      &d.interaction,    &d.endKeyword};
  for (oif_BuilderComponent* component : prepareOrder) component->Prepare();

  const oif_BuilderComponent* const writeOrder[] = {
      &d.part,     &d.instance,    &d.step,       &d.region,    &d.partAttributes,    &d.amplitude,
      &d.material, &d.transform,   &d.constraint, &d.connector, &d.boundaryCondition, &d.load,
      &d.field,    &d.interaction, &d.endKeyword};
  oif_ComponentList components;
  for (const oif_BuilderComponent* component : writeOrder)
    components.list.Append(oif_ComponentHandle(*component));

  WritePartDefinitions(out, components);
  WritePartInstanceDefinitions(out, components);
  WriteAssemblyDefinitions(out, components);
  WriteOtherModelDefinitions(out, components);
  WriteStepDefinitions(out, components);
  out.Flush();
  return static_cast<bool>(file);
}

void oif_Builder::WritePartDefinitions(utl_Stream& out, const oif_ComponentList& components) {
  if (m_data->writeAssemblyStructure) WriteHeader(out, "PARTS");
  for (const store_PartRecord& part : m_data->Model().parts)
    for (int c = 0; c < components.list.Size(); ++c)
      WriteItems(out, components.list.ConstGet(c)->PartDefinitions(part.name));
}

void oif_Builder::WritePartInstanceDefinitions(utl_Stream& out,
                                               const oif_ComponentList& components) {
  if (m_data->writeAssemblyStructure) {
    WriteHeader(out, "ASSEMBLY");
    out << "*Assembly, name=" << m_data->assemblyName;
    out.LineBreak();
  }
  for (const oif_InstanceInfo& instance : m_data->Model().instances)
    for (int c = 0; c < components.list.Size(); ++c)
      WriteItems(out, components.list.ConstGet(c)->InstanceDefinitions(instance.name));
}

void oif_Builder::WriteAssemblyDefinitions(utl_Stream& out, const oif_ComponentList& components) {
  for (int c = 0; c < components.list.Size(); ++c)
    WriteItems(out, components.list.ConstGet(c)->AssemblyDefinitions());
}

void oif_Builder::WriteOtherModelDefinitions(utl_Stream& out, const oif_ComponentList& components) {
  for (int c = 0; c < components.list.Size(); ++c)
    WriteItems(out, components.list.ConstGet(c)->ModelDefinitions());
}

void oif_Builder::WriteStepDefinitions(utl_Stream& out, const oif_ComponentList& components) {
  for (const oif_StepInfo& step : m_data->Model().steps) {
    for (int c = 0; c < components.list.Size(); ++c)
      WriteItems(out, components.list.ConstGet(c)->StepDefinitions(step.name, ""));
    if (!step.analysis) continue;
    for (const std::string& loadCase : step.loadCases) {
      if (loadCase.empty()) continue;
      for (int c = 0; c < components.list.Size(); ++c)
        WriteItems(out, components.list.ConstGet(c)->StepDefinitions(step.name, loadCase));
    }
  }
}
