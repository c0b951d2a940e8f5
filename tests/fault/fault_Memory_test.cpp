// What the objects in memory show after a failed save: the database reads itself again from its
// file, so everything written since the last save is gone whatever its kind, a later save writes
// exactly what the database then shows, and handles reached before the failure are retired.
#include <gtest/gtest.h>

#include <cerrno>
#include <string>
#include <vector>

#include "fault_Analysis.h"

namespace {

const int kNodes = 8;

template <class T>
std::vector<std::string> Names(const odb_Repository<odb_String, T>& repository,
                               const std::string& kind) {
  std::vector<std::string> names;
  for (odb_RepositoryIterator<odb_String, T> it(repository); !it.isDone(); it.next())
    names.push_back(kind + " " + it.currentKey().CStr());
  return names;
}

void Append(std::vector<std::string>& to, const std::vector<std::string>& from) {
  to.insert(to.end(), from.begin(), from.end());
}

// One line per object the database shows, with the sizes of what it holds.
std::vector<std::string> Summary(odb_Odb& odb) {
  std::vector<std::string> lines;
  for (odb_DiscretePartRepositoryIT it(odb.parts()); !it.isDone(); it.next())
    lines.push_back(std::string("part ") + it.currentKey().CStr() + " " +
                    std::to_string(it.currentValue().nodes().size()) + " nodes " +
                    std::to_string(it.currentValue().elements().size()) + " elements");
  odb_Assembly& assembly = odb.rootAssembly();
  for (odb_InstanceRepositoryIT it(assembly.instances()); !it.isDone(); it.next()) {
    odb_Instance& instance = assembly.instances()[it.currentKey()];
    lines.push_back(std::string("instance ") + it.currentKey().CStr() + " " +
                    std::to_string(instance.nodes().size()) + " nodes");
    Append(lines, Names(instance.nodeSets(), "instance node set"));
    Append(lines, Names(instance.elementSets(), "instance element set"));
  }
  Append(lines, Names(assembly.nodeSets(), "node set"));
  Append(lines, Names(odb.sectionCategories(), "category"));
  Append(lines, Names(odb.materials(), "material"));
  Append(lines, Names(odb.sections(), "section"));
  odb_StepRepository& steps = odb.steps();
  for (int s = 0; s < steps.size(); ++s) {
    odb_Step& step = steps[steps.stepNames()[s]];
    const std::string at = std::string("step ") + step.name().CStr();
    Append(lines, Names(step.loadCases(), at + " load case"));
    for (int k = 0; k < step.frames().size(); ++k)
      for (odb_FieldOutputRepositoryIT it(step.frames()[k].fieldOutputs()); !it.isDone(); it.next())
        lines.push_back(at + " frame " + std::to_string(k) + " field " + it.currentKey().CStr() +
                        " " + std::to_string(it.currentValue().bulkDataBlocks().size()) +
                        " blocks");
    for (odb_HistoryRegionRepositoryIT r(step.historyRegions()); !r.isDone(); r.next())
      for (odb_HistoryOutputRepositoryIT o(r.currentValue().historyOutputs()); !o.isDone();
           o.next())
        lines.push_back(at + " region " + r.currentKey().CStr() + " output " +
                        o.currentKey().CStr() + " " +
                        std::to_string(o.currentValue().data().size()) + " pairs");
  }
  return lines;
}

odb_SequenceInt Ints(std::initializer_list<int> values) {
  odb_SequenceInt out;
  for (int v : values) out.append(v);
  return out;
}

class MemoryAfterFailure : public fault_Analysis {
 protected:
  // Writes one object of every kind the database holds, new ones and additions to saved ones.
  static void Extend(odb_Odb& odb) {
    odb_DiscretePart& part = odb.DiscretePart("Q", odb_Enum::THREE_D, odb_Enum::DEFORMABLE_BODY);
    odb_SequenceSequenceFloat points;
    for (int i = 0; i < 2; ++i) {
      odb_SequenceFloat row;
      for (int c = 0; c < 3; ++c) row.append(static_cast<float>(i + c));
      points.append(row);
    }
    part.addNodes(Ints({1, 2}), points);
    odb.parts()["P"].addNodes(Ints({101, 102}), points);
    odb_Assembly& assembly = odb.rootAssembly();
    assembly.Instance("Q-1", odb.parts()["Q"]);
    assembly.instances()["P-1"].ElementSet("E1", Ints({1}));
    odb_SequenceString instances;
    instances.append("P-1");
    odb_SequenceSequenceInt labels;
    labels.append(Ints({1, 2}));
    assembly.NodeSet("N12", instances, labels);
    odb.SectionCategory("SHELL", "a shell");
    odb.materials().Material("STEEL");
    odb.sections().HomogeneousSolidSection("SOLID", "STEEL");
    WriteFrame(odb, 1, kNodes);
    odb_Step& step = odb.steps()["S1"];
    step.LoadCase("LC1");
    step.frames().get(0).FieldOutput("T", "", odb_Enum::SCALAR);
    // The point names its instance, so that the instance's sets in memory get the region's
    // internal set as the file does.
    odb_Instance& p1 = assembly.instances()["P-1"];
    step.HistoryRegion("Node P-1.2", "", odb_HistoryPoint(p1.getNodeFromLabel(2), p1))
        .HistoryOutput("U2", "", odb_Enum::SCALAR)
        .addData(0.5, 2.0);
    odb.Step("S2", "", odb_Enum::TIME, 1.0, "S1", "*STATIC", 1.0).Frame(0, 0.0, "");
  }
  // Fails the save of what was written since the last one with a sync's EIO.
  void FailSave(odb_Odb& odb) {
    m_vfs.Reset();
    m_vfs.Fail(fault_Op::kSync, 1, EIO, false);
    EXPECT_EQ(fault_Thrown([&] { saveOdb(odb); }), fault_kSaveFailed);
    m_vfs.Clear();
  }
};

TEST_F(MemoryAfterFailure, EveryKindOfObjectWrittenSinceTheLastSaveIsGone) {
  odb_Odb& odb = Start("kinds.odb", kNodes, false);
  const std::vector<std::string> saved = Summary(odb);
  Extend(odb);
  ASSERT_NE(Summary(odb), saved);
  FailSave(odb);
  EXPECT_EQ(Summary(odb), saved);
  EXPECT_EQ(Shows(odb, 0, kNodes), "");
  // A later save writes exactly what the database then shows.
  EXPECT_EQ(fault_Thrown([&] {
              Extend(odb);
              saveOdb(odb);
            }),
            "");
  const std::vector<std::string> written = Summary(odb);
  EXPECT_NE(written, saved);
  closeOdb(odb);
  odb_Odb& reader = openOdb(m_dir.file("kinds.odb").c_str(), true);
  EXPECT_EQ(Summary(reader), written);
}

TEST_F(MemoryAfterFailure, AnotherNameOfTheFileGoesBackToTheLastSaveToo) {
  // A second name of the file, read-only, shares the writer's connection and reads the rows it
  // wrote, saved or not: the failure takes it back to the last save as well.
  odb_Odb& odb = Start("names.odb", kNodes, false);
  WriteFrame(odb, 1, kNodes);
  odb_Odb& other = openOdb("other", m_dir.file("names.odb").c_str(), true);
  odb_Step& seen = other.steps()["S1"];
  EXPECT_EQ(seen.frames().size(), 2);
  FailSave(odb);
  EXPECT_EQ(Shows(other, 0, kNodes), "");
  EXPECT_EQ(
      fault_Thrown([&] { seen.historyRegions()["Node P-1.1"].historyOutputs()["U1"].data(); }),
      fault_kRetired);
}

TEST_F(MemoryAfterFailure, HandlesReachedBeforeTheFailureAreRetired) {
  odb_Odb& odb = Start("retired.odb", kNodes, false);
  const fault_Dump saved = DumpOf("retired.odb");
  odb_Step& step = odb.steps()["S1"];
  odb_Frame first = step.frames()[0];
  odb_DiscretePart& part = odb.parts()["P"];
  odb_Instance& instance = odb.rootAssembly().instances()["P-1"];
  odb_HistoryOutput& output = step.historyRegions()["Node P-1.1"].historyOutputs()["U1"];
  WriteFrame(odb, 1, kNodes);
  odb_Frame unsaved = step.frames()[1];
  FailSave(odb);
  // They answer what they held, the unsaved frame included: they show the past, not the file.
  EXPECT_EQ(std::string(step.name().CStr()), "S1");
  EXPECT_EQ(unsaved.incrementNumber(), 1);
  // Whatever needs the file is refused, and nothing reaches the file or the database.
  EXPECT_EQ(fault_Thrown([&] { step.Frame(2, 0.2, ""); }), fault_kRetired);
  EXPECT_EQ(fault_Thrown([&] { first.FieldOutput("E", "", odb_Enum::SCALAR); }), fault_kRetired);
  EXPECT_EQ(fault_Thrown([&] { output.addData(0.5, 5.0); }), fault_kRetired);
  EXPECT_EQ(fault_Thrown([&] { instance.NodeSet("N1", Ints({1})); }), fault_kRetired);
  odb_SequenceFloat xyz;
  for (int c = 0; c < 3; ++c) xyz.append(1.0f);
  odb_SequenceSequenceFloat point;
  point.append(xyz);
  EXPECT_EQ(fault_Thrown([&] { part.addNodes(Ints({500}), point); }), fault_kRetired);
  EXPECT_EQ(fault_Thrown([&] { saveOdb(odb); }), "");
  EXPECT_EQ(Shows(odb, 0, kNodes), "");
  EXPECT_EQ(DumpOf("retired.odb"), saved);
  // Reached again from the database, they write.
  EXPECT_EQ(fault_Thrown([&] { odb.steps()["S1"].Frame(2, 0.2, ""); }), "");
}

}  // namespace
