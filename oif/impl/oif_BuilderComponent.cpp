#include "oif_BuilderComponent.h"

namespace {

oif_ItemList Found(const std::map<std::string, oif_ItemList>& lists, const std::string& key) {
  const auto found = lists.find(key);
  return found == lists.end() ? oif_ItemList() : found->second;
}

}  // namespace

void oif_KeywordLine::Write(utl_Stream& out) const {
  out << m_text;
  out.LineBreak();
}

void oif_CommentBlock::Write(utl_Stream& out) const {
  std::size_t start = 0;
  for (;;) {
    const std::size_t end = m_text.find('\n', start);
    out << "** " << m_text.substr(start, end - start);
    out.LineBreak();
    if (end == std::string::npos) break;
    start = end + 1;
  }
}

oif_ItemList oif_BuilderComponent::PartDefinitions(const std::string& partName) const {
  return Found(m_parts, partName);
}

oif_ItemList oif_BuilderComponent::InstanceDefinitions(const std::string& instanceName) const {
  return Found(m_instances, instanceName);
}

oif_ItemList oif_BuilderComponent::StepDefinitions(const std::string& stepName,
                                                   const std::string& loadCaseName) const {
  const auto found = m_steps.find({stepName, loadCaseName});
  return found == m_steps.end() ? oif_ItemList() : found->second;
}

void oif_BuilderComponent::Clear() {
  m_model = oif_ItemList();
  m_assembly = oif_ItemList();
  m_parts.clear();
  m_instances.clear();
  m_steps.clear();
}
