// oif_BuilderComponent: the interface every keyword writer of the input deck implements, and the
// two deck items of the frame: a keyword line and a comment block; internal.
//
// A component gathers its deck items once, in Prepare(), keyed by where they go (model level,
// per part, per instance, assembly level, per step and load case), and hands them out through
// the five level queries; a level it has nothing for gives an empty list. Items write themselves
// to the formatting stream when the builder writes its sections. Items that hold bulk data
// (nodes, elements, set labels) keep a share of it and format it only when written.
#ifndef OIF_BUILDERCOMPONENT_H
#define OIF_BUILDERCOMPONENT_H

#include <map>
#include <string>
#include <utility>

#include "cow_COW.h"
#include "cow_List.h"
#include "oif_ModelData.h"
#include "oif_ModelInfo.h"
#include "utl_Stream.h"

class oif_DeckItem {
 public:
  virtual ~oif_DeckItem() = default;
  virtual oif_DeckItem* Copy() const = 0;
  virtual void Write(utl_Stream& out) const = 0;
};

using oif_Item = cow_ArrayCOW<oif_DeckItem, cow_Virtual<oif_DeckItem>>;
using oif_ItemList = cow_List<oif_Item>;

// One text, a keyword line possibly followed by data lines, written as it stands and ended by a
// line end.
class oif_KeywordLine : public oif_DeckItem {
 public:
  explicit oif_KeywordLine(std::string text) : m_text(std::move(text)) {}
  oif_DeckItem* Copy() const override { return new oif_KeywordLine(*this); }
  void Write(utl_Stream& out) const override;
  const std::string& Text() const { return m_text; }

 private:
  std::string m_text;
};

// A text with embedded line ends, written line by line as "** " and the line, empty lines
// included: "\nMATERIALS\n" gives three comment lines.
class oif_CommentBlock : public oif_DeckItem {
 public:
  explicit oif_CommentBlock(std::string text) : m_text(std::move(text)) {}
  oif_DeckItem* Copy() const override { return new oif_CommentBlock(*this); }
  void Write(utl_Stream& out) const override;

 private:
  std::string m_text;
};

inline oif_Item oif_Keyword(std::string text) {
  return oif_Item(new oif_KeywordLine(std::move(text)));
}
inline oif_Item oif_Comment(std::string text) {
  return oif_Item(new oif_CommentBlock(std::move(text)));
}

class oif_BuilderComponent {
 public:
  explicit oif_BuilderComponent(const oif_ModelInfo& info) : m_info(info) {}
  virtual ~oif_BuilderComponent() = default;
  virtual oif_ItemList ModelDefinitions() const { return m_model; }
  virtual oif_ItemList PartDefinitions(const std::string& partName) const;
  virtual oif_ItemList InstanceDefinitions(const std::string& instanceName) const;
  virtual oif_ItemList AssemblyDefinitions() const { return m_assembly; }
  virtual oif_ItemList StepDefinitions(const std::string& stepName,
                                       const std::string& loadCaseName) const;
  // Gathers every item from the model, replacing what an earlier call gathered.
  virtual void Prepare() = 0;
  virtual oif_BuilderComponent* Copy() const = 0;

 protected:
  const oif_ModelInfo& Info() const { return m_info; }
  const oif_ModelData& Model() const { return oif_ModelInfoAccess::Data(m_info); }
  void Clear();
  void AddModel(const oif_Item& item) { m_model.Append(item); }
  void AddPart(const std::string& part, const oif_Item& item) { m_parts[part].Append(item); }
  void AddInstance(const std::string& instance, const oif_Item& item) {
    m_instances[instance].Append(item);
  }
  void AddAssembly(const oif_Item& item) { m_assembly.Append(item); }
  void AddStep(const std::string& step, const std::string& loadCase, const oif_Item& item) {
    m_steps[{step, loadCase}].Append(item);
  }

 private:
  const oif_ModelInfo& m_info;
  oif_ItemList m_model, m_assembly;
  std::map<std::string, oif_ItemList> m_parts, m_instances;
  std::map<std::pair<std::string, std::string>, oif_ItemList> m_steps;
};

// The copy every component needs for its handles (cow_Virtual), made from its copy constructor.
template <class Derived>
class oif_Component : public oif_BuilderComponent {
 public:
  using oif_BuilderComponent::oif_BuilderComponent;
  oif_BuilderComponent* Copy() const override {
    return new Derived(static_cast<const Derived&>(*this));
  }
};

#endif
