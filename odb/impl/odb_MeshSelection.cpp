#include "odb_MeshSelection.h"

#include <algorithm>

odb_MeshSelection::odb_MeshSelection(std::shared_ptr<odb_MeshData> mesh, std::vector<int> positions)
    : m_mesh(std::move(mesh)),
      m_positions(std::make_shared<const std::vector<int>>(std::move(positions))),
      m_end(static_cast<int>(m_positions->size())) {}

std::vector<int> odb_MeshSelection::Positions() const {
  std::vector<int> positions(static_cast<std::size_t>(Size()));
  for (int i = 0; i < Size(); ++i) positions[i] = PositionAt(i);
  return positions;
}

void odb_MeshSelection::Append(const std::shared_ptr<odb_MeshData>& mesh,
                               const std::vector<int>& positions) {
  std::vector<int> joined = Positions();
  joined.insert(joined.end(), positions.begin(), positions.end());
  *this = odb_MeshSelection(m_mesh ? m_mesh : mesh, std::move(joined));
}

odb_MeshSelection odb_MeshSelection::Slice(int from, int to) const {
  odb_MeshSelection slice(*this);
  from = std::clamp(from, 0, Size());
  to = std::clamp(to, from, Size());
  slice.m_begin = m_begin + from;
  slice.m_end = m_begin + to;
  return slice;
}

bool odb_MeshSelection::Holds(int position) const {
  if (!m_positions) return position >= m_begin && position < m_end;
  return std::find(m_positions->begin() + m_begin, m_positions->begin() + m_end, position) !=
         m_positions->begin() + m_end;
}

bool odb_MeshSelection::IsEqual(const odb_MeshSelection& other) const {
  if (m_mesh != other.m_mesh || Size() != other.Size()) return false;
  for (int i = 0; i < Size(); ++i)
    if (PositionAt(i) != other.PositionAt(i)) return false;
  return true;
}
