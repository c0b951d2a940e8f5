// oif_Components: the fifteen components of the input deck, in the order in which their items
// are written within each section; one source each, named after it; internal.
#ifndef OIF_COMPONENTS_H
#define OIF_COMPONENTS_H

#include <string>

#include "oif_BuilderComponent.h"

// Writes the part brackets ("*Part, name="), nodes and elements of each part.
class oif_PartBuilder : public oif_Component<oif_PartBuilder> {
 public:
  using oif_Component::oif_Component;
  void Prepare() override;
};

// Writes the instances ("*Instance, name=") with their placement.
class oif_InstanceBuilder : public oif_Component<oif_InstanceBuilder> {
 public:
  using oif_Component::oif_Component;
  void Prepare() override;
};

// Writes each analysis step's header, step card, procedure lines and load cases.
class oif_StepBuilder : public oif_Component<oif_StepBuilder> {
 public:
  using oif_Component::oif_Component;
  void Prepare() override;
};

// Writes node sets, element sets and surfaces of parts, instances and the assembly.
class oif_RegionBuilder : public oif_Component<oif_RegionBuilder> {
 public:
  using oif_Component::oif_Component;
  void Prepare() override;
};

// Writes section assignments ("*Solid Section" ...) with their material.
class oif_PartAttributesBuilder : public oif_Component<oif_PartAttributesBuilder> {
 public:
  using oif_Component::oif_Component;
  void Prepare() override;
};

// Writes amplitudes; the model holds none, so it gives nothing.
class oif_AmplitudeBuilder : public oif_Component<oif_AmplitudeBuilder> {
 public:
  using oif_Component::oif_Component;
  void Prepare() override;
};

// Writes the "MATERIALS" header and one "*Material, name=" per material.
class oif_MaterialBuilder : public oif_Component<oif_MaterialBuilder> {
 public:
  using oif_Component::oif_Component;
  void Prepare() override;
};

// Writes the datum coordinate systems ("*Orientation, name=").
class oif_TransformBuilder : public oif_Component<oif_TransformBuilder> {
 public:
  using oif_Component::oif_Component;
  void Prepare() override;
};

// Writes constraints; the model holds none, so it gives nothing.
class oif_ConstraintBuilder : public oif_Component<oif_ConstraintBuilder> {
 public:
  using oif_Component::oif_Component;
  void Prepare() override;
};

// Writes connectors; the model holds none, so it gives nothing.
class oif_ConnectorBuilder : public oif_Component<oif_ConnectorBuilder> {
 public:
  using oif_Component::oif_Component;
  void Prepare() override;
};

// Writes boundary conditions; the model holds none, so it gives nothing.
class oif_BoundaryConditionBuilder : public oif_Component<oif_BoundaryConditionBuilder> {
 public:
  using oif_Component::oif_Component;
  void Prepare() override;
};

// Writes loads; the model holds none, so it gives nothing.
class oif_LoadBuilder : public oif_Component<oif_LoadBuilder> {
 public:
  using oif_Component::oif_Component;
  void Prepare() override;
};

// Writes predefined fields; the model holds none, so it gives nothing.
class oif_FieldBuilder : public oif_Component<oif_FieldBuilder> {
 public:
  using oif_Component::oif_Component;
  void Prepare() override;
};

// Writes interactions; the model holds none, so it gives nothing.
class oif_InteractionBuilder : public oif_Component<oif_InteractionBuilder> {
 public:
  using oif_Component::oif_Component;
  void Prepare() override;
};

// Writes the closing keywords and the default output requests of each step.
class oif_EndKeywordBuilder : public oif_Component<oif_EndKeywordBuilder> {
 public:
  using oif_Component::oif_Component;
  void Prepare() override;
};

// The step card of `step` ("*Step, name=" with its parameters, and the description line).
// `nlgeom` is the geometric nonlinearity in force before the step; the card updates it.
std::string oif_StepCard(const oif_StepInfo& step, bool& nlgeom);
// The procedure lines of `step`: its keyword with parameters and data line, and what follows
// them for its kind (bulk viscosity, mass scaling, modal damping, selected modes ...).
std::string oif_ProcedureLines(const oif_StepInfo& step);

#endif
