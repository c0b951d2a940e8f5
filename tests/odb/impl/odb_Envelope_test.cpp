#include "odb_Envelope.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "FieldFile.h"
#include "ThrownMessage.h"

namespace {

// Component c of location l in frame f: varied so that each frame wins somewhere, with ties.
float Component(int f, int l, int c) {
  return float(((f * 7 + l * 3 + c * 5) % 11) - 4) + (c == 0 ? 0.0f : 0.5f * c);
}

double Mises(const float* s) {
  const double d1 = s[0] - s[1], d2 = s[1] - s[2], d3 = s[2] - s[0];
  return std::sqrt(0.5 * (d1 * d1 + d2 * d2 + d3 * d3) +
                   3.0 * (double(s[3]) * s[3] + double(s[4]) * s[4] + double(s[5]) * s[5]));
}

// The winner of each location over criterion[f][l], the earlier frame on a tie.
void Expected(const std::vector<std::vector<double>>& criterion, bool max, std::vector<double>& best,
              std::vector<int>& from) {
  best = criterion[0];
  from.assign(best.size(), 0);
  for (std::size_t f = 1; f < criterion.size(); ++f)
    for (std::size_t l = 0; l < best.size(); ++l)
      if (max ? criterion[f][l] > best[l] : criterion[f][l] < best[l]) {
        best[l] = criterion[f][l];
        from[l] = int(f);
      }
}

}  // namespace

class EnvelopeFrames : public FieldFile {
 protected:
  static constexpr int kFrames = 4;
  // Frame f (0-based) of step LOAD: S at the integration points of the two hexahedra (16
  // locations) and at the centroids of the two shells (2 locations), and P, a SCALAR at nodes
  // 1..6, all from Component.
  void WriteFrames() {
    odb_Step& step = m_odb->steps()["LOAD"];
    for (int f = 0; f < kFrames; ++f) {
      odb_Frame frame = f == 0 ? m_frame : step.Frame(f + 1, 0.5 + f, "");
      odb_FieldOutput& s = frame.FieldOutput("S", "stress", odb_Enum::TENSOR_3D_FULL);
      s.addData(odb_Enum::INTEGRATION_POINT, *m_instance, Ints({1, 2}), Rows(f, 0, 16, 6));
      s.addData(odb_Enum::CENTROID, *m_instance, Ints({4, 5}), Rows(f, 16, 2, 6));
      odb_FieldOutput& p = frame.FieldOutput("P", "pressure", odb_Enum::SCALAR);
      p.addData(odb_Enum::NODAL, *m_instance, Ints({1, 2, 3, 4, 5, 6}), Rows(f, 0, 6, 1));
    }
  }
  static odb_SequenceSequenceFloat Rows(int f, int first, int n, int width) {
    odb_SequenceSequenceFloat rows;
    for (int l = first; l < first + n; ++l) {
      odb_SequenceFloat row;
      for (int c = 0; c < width; ++c) row.append(Component(f, l, c));
      rows.append(row);
    }
    return rows;
  }
  odb_SequenceFieldOutput Fields(const char* name) {
    odb_SequenceFieldOutput fields;
    for (int f = 0; f < kFrames; ++f)
      fields.append(m_odb->steps()["LOAD"].frames(f).fieldOutputs()[name]);
    return fields;
  }
  // Checks an envelope against the criterion per frame and location.
  static void ExpectEnvelope(const odb_SequenceFieldOutput& result,
                             const std::vector<std::vector<double>>& criterion, bool max) {
    std::vector<double> best;
    std::vector<int> from;
    Expected(criterion, max, best, from);
    ASSERT_EQ(result.size(), 2);
    const odb_FieldOutput &envelope = result[0], &indices = result[1];
    ASSERT_EQ(envelope.values().size(), int(best.size()));
    for (std::size_t l = 0; l < best.size(); ++l) {
      EXPECT_NEAR(envelope.values()[int(l)].data()[0], best[l], 1e-5 * (1 + std::fabs(best[l])))
          << l;
      EXPECT_EQ(indices.values()[int(l)].data()[0], float(from[l])) << l;
    }
  }
};

TEST_F(EnvelopeFrames, ByValueKeepsTheExtremeAndTheFrameItCameFrom) {
  WriteFrames();
  std::vector<std::vector<double>> values(kFrames);
  for (int f = 0; f < kFrames; ++f)
    for (int l = 0; l < 6; ++l) values[f].push_back(Component(f, l, 0));
  const odb_SequenceFieldOutput max = maxEnvelope(Fields("P"));
  ExpectEnvelope(max, values, true);
  ExpectEnvelope(minEnvelope(Fields("P")), values, false);
  EXPECT_EQ(max[0].name(), "Envelope");
  EXPECT_EQ(max[1].name(), "Field Indices: pressure");
  EXPECT_EQ(max[1].type(), odb_Enum::SCALAR);
  EXPECT_EQ(max[0].values()[4].nodeLabel(), 5);
  EXPECT_TRUE(max[0].isOrphan());
  // A tie keeps the earlier field: the first frame given again at the end wins nowhere.
  odb_SequenceFieldOutput twice = Fields("P");
  twice.append(twice[0]);
  const odb_SequenceFieldOutput repeated = maxEnvelope(twice);
  for (int l = 0; l < 6; ++l) EXPECT_LT(repeated[1].values()[l].data()[0], float(kFrames));
}

TEST_F(EnvelopeFrames, ByInvariantAndComponentOfStoredFields) {
  WriteFrames();
  Reopen();  // the frames are read from the file, one sub-field at a time
  std::vector<std::vector<double>> mises(kFrames), s11(kFrames);
  for (int f = 0; f < kFrames; ++f)
    for (int l = 0; l < 18; ++l) {
      float s[6];
      for (int c = 0; c < 6; ++c) s[c] = Component(f, l, c);
      mises[f].push_back(Mises(s));
      s11[f].push_back(s[0]);
    }
  const odb_SequenceFieldOutput envelope = maxEnvelope(Fields("S"), odb_Enum::MISES);
  ExpectEnvelope(envelope, mises, true);
  ExpectEnvelope(minEnvelope(Fields("S"), odb_Enum::MISES), mises, false);
  ExpectEnvelope(maxEnvelope(Fields("S"), odb_String("S11")), s11, true);
  ExpectEnvelope(minEnvelope(Fields("S"), odb_String("S11")), s11, false);
  EXPECT_EQ(envelope[0].values()[17].elementLabel(), 5);
  EXPECT_EQ(envelope[0].values()[9].integrationPoint(), 2);
  EXPECT_EQ(TakeWarnings(), "");
}

TEST_F(EnvelopeFrames, AlternatesStandInWhereACriterionDoesNotApply) {
  WriteFrames();
  // The hexahedra have no plane of their own: their maximum principal stands in for the in-plane
  // one. Values diagonal in frame f: (f, 2 - f, 1).
  odb_SequenceFieldOutput diagonal;
  for (int f = 0; f < 3; ++f) {
    odb_FieldOutput& s = m_frame.FieldOutput(("D" + std::to_string(f)).c_str(), "",
                                             odb_Enum::TENSOR_3D_FULL);
    odb_SequenceSequenceFloat rows;
    for (int l = 0; l < 16; ++l) rows.append(Points({{float(f), float(2 - f), 1, 0, 0, 0}})[0]);
    s.addData(odb_Enum::INTEGRATION_POINT, *m_instance, Ints({1, 2}), rows);
    diagonal.append(s);
  }
  const odb_SequenceFieldOutput inPlane = maxEnvelope(diagonal, odb_Enum::MAX_INPLANE_PRINCIPAL);
  EXPECT_EQ(inPlane[0].values()[0].data()[0], 2.0f);  // max(f, 2 - f, 1) over f = 0, 1, 2
  EXPECT_EQ(inPlane[1].values()[0].data()[0], 0.0f);   // first reached in frame 0
  EXPECT_EQ(TakeWarnings(),
            "Warning: The specified tensor invariant is not applicable to some elements.  An "
            "alternate invariant has been used as the criterion for min/max envelope "
            "computation.\n");
  // The shells do not compute S33: S22 stands in for them, the hexahedra keep S33.
  const odb_SequenceFieldOutput s33 = maxEnvelope(Fields("S"), odb_String("S33"));
  for (int l = 0; l < 18; ++l) {
    double best = Component(0, l, l < 16 ? 2 : 1);
    for (int f = 1; f < kFrames; ++f) best = std::max(best, double(Component(f, l, l < 16 ? 2 : 1)));
    EXPECT_EQ(s33[0].values()[l].data()[0], float(best)) << l;
  }
  EXPECT_EQ(TakeWarnings(),
            "Warning: The specified tensor component is not applicable to some elements.  An "
            "alternate component has been used as the criterion for min/max envelope "
            "computation.\n");
}

TEST_F(EnvelopeFrames, FieldsThatCannotBeEnvelopedTogetherAreRefused) {
  WriteFrames();
  odb_SequenceFieldOutput mixed = Fields("P");
  odb_FieldOutput& u = m_frame.VectorOutput("U", "", 3);
  u.addData(odb_Enum::NODAL, *m_instance, Ints({1, 2, 3, 4, 5, 6}), Rows(0, 0, 6, 3));
  mixed.append(u);
  EXPECT_EQ(MessageOf([&] { maxEnvelope(mixed); }),
            "Data types SCALAR and VECTOR are incompatible.");
  odb_SequenceFieldOutput fewer = Fields("S");
  fewer.append(fewer[0].getSubset(odb_Enum::CENTROID));
  EXPECT_EQ(MessageOf([&] { maxEnvelope(fewer, odb_Enum::MISES); }).substr(0, 60),
            "Fields are associated with differently sized output requests");
  odb_SequenceFieldOutput smaller = Fields("P");
  smaller.append(smaller[0].getSubset(m_instance->getNodeFromLabel(2)));
  EXPECT_EQ(MessageOf([&] { minEnvelope(smaller); }), "Incompatible fields");
  EXPECT_EQ(MessageOf([&] { maxEnvelope(Fields("S"), odb_Enum::MAGNITUDE); }),
            "Invalid invariant");
  EXPECT_EQ(MessageOf([&] { maxEnvelope(Fields("S"), odb_String("S44")); }),
            "Invalid componentLabel");
  EXPECT_EQ(MessageOf([&] { maxEnvelope(Fields("S")); }), "SCALAR data expected");
  // One field is its own envelope, found in field 0.
  odb_SequenceFieldOutput one;
  one.append(u);
  const odb_SequenceFieldOutput single = maxEnvelope(one, odb_String("U2"));
  EXPECT_EQ(single[0].values()[3].data()[0], Component(0, 3, 1));
  EXPECT_EQ(single[1].values()[3].data()[0], 0.0f);
}
