#include "odb_MathUtil.h"

#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "FieldFile.h"
#include "HistoryFile.h"
#include "ThrownMessage.h"

namespace {

// Component c of row r of a field written by Grid(scale): scale * (r + 1) + c / 4.
float Entry(float scale, int r, int c) {
  return scale * float(r + 1) + float(c) / 4;
}

odb_SequenceSequenceFloat Grid(int n, int width, float scale) {
  odb_SequenceSequenceFloat rows;
  for (int r = 0; r < n; ++r) {
    odb_SequenceFloat row;
    for (int c = 0; c < width; ++c) row.append(Entry(scale, r, c));
    rows.append(row);
  }
  return rows;
}

// Every float of every bulk block, in order.
std::vector<float> Floats(const odb_FieldOutput& field, bool conjugate = false) {
  std::vector<float> out;
  const odb_SequenceFieldBulkData& blocks = field.bulkDataBlocks();
  for (int b = 0; b < blocks.size(); ++b) {
    const float* data = conjugate ? blocks[b].conjugateData() : blocks[b].data();
    if (data) out.insert(out.end(), data, data + blocks[b].length() * blocks[b].width());
  }
  return out;
}

}  // namespace

class MathUtilFields : public FieldFile {
 protected:
  // A full tensor at the 16 integration points of the hexahedra and at the centroids of the
  // shells' section point 2: two sub-fields, rows 0..15 then 16..17 of Grid(18, 6, scale).
  odb_FieldOutput& Stress(odb_Frame frame, const char* name, float scale) {
    odb_FieldOutput& s = frame.FieldOutput(name, "stress", odb_Enum::TENSOR_3D_FULL);
    const odb_SequenceSequenceFloat rows = Grid(18, 6, scale);
    s.addData(odb_Enum::INTEGRATION_POINT, *m_instance, Ints({1, 2}), rows.slice(0, 16));
    s.addData(odb_Enum::CENTROID, *m_instance, Ints({4, 5}), rows.slice(16, 18),
              odb_SectionPoint(2, "Top"));
    return s;
  }
  odb_FieldOutput& Displacement(const char* name, float scale, int nodes = 4) {
    odb_FieldOutput& u = m_frame.VectorOutput(name, "displacement", 3);
    odb_SequenceInt labels;
    for (int n = 1; n <= nodes; ++n) labels.append(n);
    u.addData(odb_Enum::NODAL, *m_instance, labels, Grid(nodes, 3, scale));
    return u;
  }
  // Checks every float of `field` against f(row, component) over the rows of Stress.
  static void ExpectStress(const odb_FieldOutput& field, const std::function<double(int, int)>& f) {
    const std::vector<float> got = Floats(field);
    ASSERT_EQ(got.size(), 18u * 6);
    for (int r = 0; r < 18; ++r)
      for (int c = 0; c < 6; ++c) {
        const double want = f(r, c);
        EXPECT_NEAR(got[r * 6 + c], want, 1e-5 * (1 + std::fabs(want))) << r << " " << c;
      }
  }
};

TEST_F(MathUtilFields, TwoFieldsCombineLocationByLocationIntoAnOrphan) {
  const odb_FieldOutput g = Stress(m_frame, "G", 1.0f), q = Stress(m_frame, "Q", -0.5f);
  const odb_FieldOutput sum = g + q, difference = g - q;
  ExpectStress(sum, [](int r, int c) { return Entry(1, r, c) + Entry(-0.5f, r, c); });
  ExpectStress(difference, [](int r, int c) { return Entry(1, r, c) - Entry(-0.5f, r, c); });
  EXPECT_EQ(sum.name(), "G  +  Q");
  EXPECT_EQ(difference.name(), "G  -  Q");
  EXPECT_EQ(difference.description(), "G  -  Q");
  EXPECT_EQ(sum.type(), odb_Enum::TENSOR_3D_FULL);
  EXPECT_EQ(sum.componentLabels(), g.componentLabels());
  // The result reads like any field: values with their locations, subsets, invariants.
  ASSERT_EQ(sum.values().size(), 18);
  const odb_FieldValue v = sum.values()[17];
  EXPECT_EQ(v.elementLabel(), 5);
  EXPECT_EQ(v.sectionPoint().number(), 2);
  EXPECT_EQ(sum.values()[9].integrationPoint(), 2);
  EXPECT_EQ(sum.getSubset(m_instance->getElementFromLabel(2)).values().size(), 8);
  EXPECT_EQ(sum.getSubset(odb_Enum::CENTROID).values().size(), 2);
  const odb_FieldOutput mises = sum.getScalarField(odb_Enum::MISES);
  EXPECT_FLOAT_EQ(mises.values()[3].data()[0], sum.values()[3].mises());
  EXPECT_TRUE(sum.isOrphan());
  EXPECT_EQ(MessageOf([&] {
              odb_FieldOutput(sum).addData(odb_Enum::CENTROID, *m_instance, Ints({4}),
                                           Grid(1, 6, 1));
            }),
            "addData() not valid for an orphaned object.");
  // A load combination; the operands are unchanged.
  const odb_FieldOutput combination = 1.35f * g + 1.5f * q;
  EXPECT_EQ(combination.name(), "1.35  *  G  +  1.5  *  Q");
  ExpectStress(combination, [](int r, int c) { return 1.35 * Entry(1, r, c) + 1.5 * Entry(-0.5f, r, c); });
  ExpectStress(g, [](int r, int c) { return Entry(1, r, c); });
}

TEST_F(MathUtilFields, AFloatWithAFieldActsOnEveryComponent) {
  const odb_FieldOutput u = Displacement("U", 2.0f);
  const odb_FieldOutput times = u * 2.0f, over = u / 4.0f, minus = 3.0f - u, plus = u + -0.1f;
  EXPECT_EQ(times.name(), "U  *  2");
  EXPECT_EQ(over.name(), "U  /  4");
  EXPECT_EQ(minus.name(), "3  -  U");
  EXPECT_EQ(plus.name(), "U  +  -0.1");
  const std::vector<float> t = Floats(times), o = Floats(over), m = Floats(minus), p = Floats(plus);
  for (int r = 0; r < 4; ++r)
    for (int c = 0; c < 3; ++c) {
      const double x = Entry(2, r, c);
      EXPECT_FLOAT_EQ(t[r * 3 + c], float(2 * x));
      EXPECT_FLOAT_EQ(o[r * 3 + c], float(x / 4));
      EXPECT_FLOAT_EQ(m[r * 3 + c], float(3 - x));
      EXPECT_FLOAT_EQ(p[r * 3 + c], float(x - 0.1));
    }
  const odb_FieldOutput negated = -u;
  EXPECT_EQ(negated.name(), " - ( U )");
  EXPECT_EQ(Floats(negated)[4], -Entry(2, 1, 1));
  EXPECT_EQ(abs(u).name(), " abs ( U )");
  // A float divided by a field: SCALAR fields only.
  EXPECT_EQ(MessageOf([&] { 2.0f / u; }), "Operation float / field is valid only for SCALAR fields");
  const odb_FieldOutput u1 = u.getScalarField("U1");
  const std::vector<float> inverse = Floats(2.0f / u1);
  EXPECT_FLOAT_EQ(inverse[3], float(2 / Entry(2, 3, 0)));
  EXPECT_EQ(odb_MathUtil::fieldOperation(2.0f, u1, odb_MATH_DIVIDE).name(), "2  /  U");
}

TEST_F(MathUtilFields, FunctionsActOnEveryComponent) {
  // Values in (0, 1), where every function is defined.
  odb_FieldOutput& f = m_frame.FieldOutput("F", "fraction", odb_Enum::SCALAR);
  odb_SequenceSequenceFloat rows;
  for (int i = 0; i < 12; ++i) rows.append(Points({{0.05f + 0.075f * i}})[0]);
  f.addData(odb_Enum::NODAL, *m_instance, Ints({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}), rows);
  const double pi = std::acos(-1.0);
  const std::vector<std::pair<odb_FieldOutput, std::function<double(double)>>> cases = {
      {abs(-f), [](double x) { return x; }},
      {acos(f), [](double x) { return std::acos(x); }},
      {asin(f), [](double x) { return std::asin(x); }},
      {atan(f), [](double x) { return std::atan(x); }},
      {cos(f), [](double x) { return std::cos(x); }},
      {sin(f), [](double x) { return std::sin(x); }},
      {tan(f), [](double x) { return std::tan(x); }},
      {degreeToRadian(f), [pi](double x) { return x * pi / 180; }},
      {radianToDegree(f), [pi](double x) { return x * 180 / pi; }},
      {exp(f), [](double x) { return std::exp(x); }},
      {exp10(f), [](double x) { return std::pow(10.0, x); }},
      {log(f), [](double x) { return std::log(x); }},
      {log10(f), [](double x) { return std::log10(x); }},
      {sqrt(f), [](double x) { return std::sqrt(x); }},
      {power(f, 2.5f), [](double x) { return std::pow(x, 2.5); }},
      {f * f, [](double x) { return x * x; }},
      {f / (f + 1.0f), [](double x) { return x / (x + 1); }}};
  for (const auto& c : cases) {
    const std::vector<float> got = Floats(c.first);
    ASSERT_EQ(got.size(), 12u) << c.first.name().CStr();
    for (int i = 0; i < 12; ++i) {
      const double want = c.second(rows[i][0]);
      EXPECT_NEAR(got[i], want, 2e-6 * (1 + std::fabs(want))) << c.first.name().CStr() << i;
    }
  }
  EXPECT_EQ(sqrt(f).name(), " sqrt ( F )");
  EXPECT_EQ(power(f, 2.5f).name(), "F  power  2.5");
  EXPECT_EQ(exp10(f).name(), " exp10 ( F )");
}

TEST_F(MathUtilFields, DomainErrorsRefuseTheWholeOperation) {
  const odb_FieldOutput u = Displacement("U", 1.0f);  // components 1 .. 4.5
  const odb_FieldOutput shifted = u - 2.0f;           // -1 .. 2.5
  EXPECT_EQ(MessageOf([&] { log(shifted); }), "Operand must be greater than zero");
  EXPECT_EQ(MessageOf([&] { log10(u * 0.0f); }), "Operand must be greater than zero");
  EXPECT_EQ(MessageOf([&] { sqrt(shifted); }), "Operand must be greater than or equal to zero");
  EXPECT_EQ(MessageOf([&] { u / 0.0f; }), "Division by zero");
  EXPECT_EQ(MessageOf([&] { u.getScalarField("U1") / (u.getScalarField("U2") * 0.0f); }),
            "Division by zero");
  EXPECT_EQ(MessageOf([&] { acos(u); }), "Invalid math operation");
  EXPECT_EQ(MessageOf([&] { asin(u); }), "Invalid math operation");
  EXPECT_EQ(MessageOf([&] { power(shifted, 0.5f); }), "Error: negative raised to float power");
  EXPECT_EQ(MessageOf([&] { power(u * 0.0f, -1.0f); }), "Error: float raised to negative power");
  EXPECT_EQ(MessageOf([&] { power(u * 1e30f, 2.0f); }),
            "Error: over or underflow in opPow operation");
  EXPECT_FLOAT_EQ(Floats(power(shifted, 2.0f))[0], float(std::pow(Entry(1, 0, 0) - 2, 2)));
}

TEST_F(MathUtilFields, RefusedOperandsNameWhatDiffers) {
  const odb_FieldOutput s = Stress(m_frame, "S", 1.0f), u = Displacement("U", 1.0f);
  const odb_FieldOutput scalar = u.getScalarField("U1");
  EXPECT_EQ(MessageOf([&] { scalar + u; }), "Data types SCALAR and VECTOR are incompatible.");
  EXPECT_EQ(MessageOf([&] { s * s; }), "Operation not valid between tensor");
  EXPECT_EQ(MessageOf([&] { s / s; }), "Operation not valid between tensor");
  EXPECT_EQ(MessageOf([&] { u * u; }), "Operation not valid between vectors");
  odb_FieldOutput& m = m_frame.MatrixOutput("M", "", 2, 2);
  m.addData(odb_Enum::NODAL, *m_instance, Ints({1}), Grid(1, 4, 1));
  EXPECT_EQ(MessageOf([&] { m * m; }), "Operation not valid between matrices");
  EXPECT_EQ(MessageOf([&] { s + s.getSubset(odb_Enum::CENTROID); }),
            "Fields are associated with differently sized output requests. \nProbable causes "
            "include: different output regions, different output positions, \noutput valid only "
            "for certain element types, \nand the use of the fieldOutput.getSubset() method.");
  const odb_FieldOutput hexes = s.getSubset(odb_Enum::INTEGRATION_POINT),
                        shells = s.getSubset(odb_Enum::CENTROID);
  EXPECT_EQ(MessageOf([&] { hexes + shells; }), "Incompatible data locations");
  EXPECT_EQ(MessageOf([&] { u + Displacement("V", 1.0f, 5); }),
            "Objects does not have compatible amount of data");
  const odb_FieldOutput first = s.getSubset(m_instance->getElementFromLabel(1)),
                        second = s.getSubset(m_instance->getElementFromLabel(2));
  EXPECT_EQ(MessageOf([&] { first + second; }), "Incompatible fields");
  EXPECT_EQ(Floats(first + first)[47], 2 * Entry(1, 7, 5));
  const odb_FieldOutput flags("B", "", odb_Enum::BOOLEAN, odb_SequenceString(),
                              odb_SequenceInvariant());
  EXPECT_EQ(MessageOf([&] { flags * 2.0f; }), "Unknown data type");
  EXPECT_EQ(MessageOf([&] { odb_MathUtil::fieldOperation(u, 99); }), "Invalid math operation");
  EXPECT_EQ(MessageOf([&] { odb_MathUtil::fieldOperation(u, u, odb_MATH_POWER); }),
            "Invalid math operation");
  EXPECT_EQ(MessageOf([&] { odb_MathUtil::fieldOperation(2.0f, u, odb_MATH_POWER); }),
            "Invalid math operation");
  EXPECT_EQ(MessageOf([&] { odb_MathUtil::fieldOperation(u, 2.0f, 23); }),
            "Invalid math operation");
  EXPECT_EQ(MessageOf([&] { odb_MathUtil::fieldOperation(u, odb_MATH_ADD); }),
            "Invalid math operation");
  EXPECT_EQ(MessageOf([&] { transpose(s); }), "Invalid math operation");
}

TEST_F(MathUtilFields, ChainedResultsKeepTheValuesOfWhenTheyWereMade) {
  odb_FieldOutput& u = Displacement("U", 1.0f);
  // Operations that cannot fail wait for their data to be asked for; what they show must not
  // depend on when that happens.
  const odb_FieldOutput scaled = 2.0f * abs(u - 3.0f), root = sqrt(scaled + 1.0f);
  u.addData(odb_Enum::NODAL, *m_instance, Ints({9}), Grid(1, 3, 100.0f));
  ASSERT_EQ(scaled.values().size(), 4);
  ASSERT_EQ(u.values().size(), 5);
  for (int r = 0; r < 4; ++r)
    for (int c = 0; c < 3; ++c) {
      const double x = Entry(1, r, c);
      EXPECT_FLOAT_EQ(scaled.values()[r].data()[c], float(2 * std::fabs(x - 3)));
      EXPECT_FLOAT_EQ(root.values()[r].data()[c], float(std::sqrt(2 * std::fabs(x - 3) + 1)));
    }
  EXPECT_EQ(scaled.name(), "2  *   abs ( U  -  3 )");
  EXPECT_EQ(MessageOf([&] { log(scaled - 100.0f); }), "Operand must be greater than zero");
}

TEST_F(MathUtilFields, TransposeExchangesRowsAndColumnsOfMatrices) {
  odb_FieldOutput& m = m_frame.MatrixOutput("M", "", 2, 3);
  m.addData(odb_Enum::NODAL, *m_instance, Ints({1, 2}), Grid(2, 6, 1));
  const odb_FieldOutput t = transpose(m);
  EXPECT_EQ(t.name(), " transpose ( M )");
  const odb_SequenceString labels = t.componentLabels();
  ASSERT_EQ(labels.size(), 6);
  EXPECT_EQ(labels[0], "M11");
  EXPECT_EQ(labels[1], "M12");
  EXPECT_EQ(labels[5], "M32");
  const std::vector<float> got = Floats(t);
  for (int v = 0; v < 2; ++v)
    for (int i = 0; i < 3; ++i)
      for (int j = 0; j < 2; ++j) EXPECT_EQ(got[v * 6 + i * 2 + j], Entry(1, v, j * 3 + i));
}

TEST_F(MathUtilFields, ComplexDataCombinesWithItsConjugate) {
  odb_FieldOutput& z = m_frame.FieldOutput("Z", "", odb_Enum::SCALAR);
  z.addData(odb_Enum::NODAL, *m_instance, Ints({1, 2, 3}), Points({{3}, {-1}, {0.5f}}),
            odb_SectionPoint(), odb_SequenceSequenceFloat(), Points({{4}, {1}, {-2}}));
  odb_FieldOutput& r = m_frame.FieldOutput("R", "", odb_Enum::SCALAR);
  r.addData(odb_Enum::NODAL, *m_instance, Ints({1, 2, 3}), Points({{2}, {3}, {4}}));
  const std::complex<double> zs[] = {{3, 4}, {-1, 1}, {0.5, -2}};
  const double rs[] = {2, 3, 4};
  const std::vector<float> magnitude = Floats(complexMagnitude(z)),
                           phase = Floats(complexPhase(z)), real = Floats(complexReal(z)),
                           imag = Floats(complexImag(z));
  for (int i = 0; i < 3; ++i) {
    EXPECT_FLOAT_EQ(magnitude[i], float(std::abs(zs[i])));
    EXPECT_FLOAT_EQ(phase[i], float(std::arg(zs[i])));
    EXPECT_EQ(real[i], float(zs[i].real()));
    EXPECT_EQ(imag[i], float(zs[i].imag()));
  }
  EXPECT_TRUE(Floats(complexMagnitude(z), true).empty());  // results are real
  EXPECT_EQ(Floats(complexImag(r))[1], 0.0f);
  EXPECT_FLOAT_EQ(Floats(complexPhase(-r))[0], float(std::acos(-1.0)));
  // Products and quotients of complex fields are complex; a real operand has imaginary part 0.
  const odb_FieldOutput product = z * z, quotient = r / z, scaled = 2.0f * z, shifted = z - 1.0f;
  const odb_FieldOutput inverse = 1.0f / z, negated = -z;
  for (int i = 0; i < 3; ++i) {
    const std::complex<double> checks[][2] = {
        {zs[i] * zs[i], {Floats(product)[i], Floats(product, true)[i]}},
        {rs[i] / zs[i], {Floats(quotient)[i], Floats(quotient, true)[i]}},
        {2.0 * zs[i], {Floats(scaled)[i], Floats(scaled, true)[i]}},
        {zs[i] - 1.0, {Floats(shifted)[i], Floats(shifted, true)[i]}},
        {1.0 / zs[i], {Floats(inverse)[i], Floats(inverse, true)[i]}},
        {-zs[i], {Floats(negated)[i], Floats(negated, true)[i]}}};
    for (const auto& check : checks) {
      EXPECT_NEAR(check[1].real(), check[0].real(), 1e-5) << i;
      EXPECT_NEAR(check[1].imag(), check[0].imag(), 1e-5) << i;
    }
  }
  EXPECT_TRUE(Floats(r + r, true).empty());
  EXPECT_TRUE(Floats(sqrt(r), true).empty());
  EXPECT_TRUE(Floats(power(z, 2.0f), true).empty());
}

TEST_F(MathUtilFields, AResultSavedIntoAFrameReadsBackBitForBit) {
  Stress(m_frame, "G", 1.0f);
  Stress(m_frame, "Q", -0.5f);
  odb_Frame second = m_odb->steps()["LOAD"].Frame(2, 1.0, "combination");
  {
    const odb_FieldOutput& g = m_frame.fieldOutputs()["G"];
    const odb_FieldOutput& q = m_frame.fieldOutputs()["Q"];
    second.FieldOutput("C", "1.35 G + 1.5 Q", odb_Enum::TENSOR_3D_FULL).addData(1.35f * g + 1.5f * q);
  }
  Reopen();
  const odb_Step& step = m_odb->steps()["LOAD"];
  const odb_FieldOutput& g = step.frames(0).fieldOutputs()["G"];
  const odb_FieldOutput& q = step.frames(0).fieldOutputs()["Q"];
  const odb_FieldOutput& stored = step.frames(1).fieldOutputs()["C"];
  // The stored operands are read block by block; the same arithmetic gives the same bits.
  const std::vector<float> again = Floats(1.35f * g + 1.5f * q), saved = Floats(stored);
  ASSERT_EQ(saved.size(), 18u * 6);
  ASSERT_EQ(again.size(), saved.size());
  EXPECT_EQ(std::memcmp(again.data(), saved.data(), saved.size() * sizeof(float)), 0);
  EXPECT_FLOAT_EQ(saved[100], float(1.35 * Entry(1, 16, 4) + 1.5 * Entry(-0.5f, 16, 4)));
  EXPECT_EQ(stored.values()[16].elementLabel(), 4);
  EXPECT_EQ(stored.values()[16].sectionPoint().number(), 2);
  // A result of data still in the file is computed at once: it outlives the database.
  const odb_FieldOutput doubled = 2.0f * g;
  closeOdb(*m_odb);
  EXPECT_EQ(Floats(doubled)[100], 2 * Entry(1, 16, 4));
}

class MathUtilValues : public MathUtilFields {};

TEST_F(MathUtilValues, ValuesCombineTheirComponentsAndKeepTheFirstLocation) {
  const odb_FieldOutput s = Stress(m_frame, "S", 1.0f), u = Displacement("U", 1.0f);
  const odb_FieldValue a = s.values()[3], b = s.values()[17];
  const odb_FieldValue sum = a + b, scaled = 2.0f * a, root = sqrt(abs(a - 10.0f));
  for (int c = 0; c < 6; ++c) {
    EXPECT_FLOAT_EQ(sum.data()[c], Entry(1, 3, c) + Entry(1, 17, c));
    EXPECT_FLOAT_EQ(scaled.data()[c], 2 * Entry(1, 3, c));
    EXPECT_FLOAT_EQ(root.data()[c], float(std::sqrt(std::fabs(Entry(1, 3, c) - 10.0))));
  }
  EXPECT_EQ(sum.elementLabel(), 1);
  EXPECT_EQ(sum.integrationPoint(), 4);
  EXPECT_FLOAT_EQ((a / 2.0f).data()[1], Entry(1, 3, 1) / 2);
  EXPECT_EQ(MessageOf([&] { a + u.values()[0]; }), "Incompatible fieldValues data types.");
  EXPECT_EQ(MessageOf([&] { a * b; }), "Operation not valid between tensor");
  EXPECT_EQ(MessageOf([&] { 1.0f / u.values()[0]; }),
            "Operation float / field is valid only for SCALAR fields");
  EXPECT_EQ(MessageOf([&] { log(a - 100.0f); }), "Operand must be greater than zero");
  EXPECT_EQ(MessageOf([&] { odb_MathUtil::fieldValueOperation(a, 23); }),
            "Invalid math operation");
  odb_FieldValue z = u.getScalarField("U2").values()[0];
  const float im = 2.0f;
  z.SetConjugateData(&im, 1);
  EXPECT_FLOAT_EQ(complexMagnitude(z).data()[0], std::hypot(Entry(1, 0, 1), 2.0f));
  EXPECT_FLOAT_EQ((z * z).conjugateData()[0], 2 * Entry(1, 0, 1) * 2.0f);
  EXPECT_TRUE(exp(z).conjugateData().isEmpty());
}

class MathUtilHistory : public HistoryFile {
 protected:
  // An output of region `region` with value 10 t + offset at t = 0.1, 0.2, ...
  odb_HistoryOutput& Output(odb_HistoryRegion& region, const char* name, int pairs, float offset) {
    odb_HistoryOutput& h = region.HistoryOutput(name, "", odb_Enum::SCALAR);
    for (int i = 1; i <= pairs; ++i) h.addData(0.1 * i, 10 * 0.1 * i + offset);
    return h;
  }
  odb_HistoryRegion& Region(const char* name, const odb_LoadCase& loadCase = odb_LoadCase()) {
    return m_step->HistoryRegion(name, "", odb_HistoryPoint(m_instance->getNodeFromLabel(1)),
                                 loadCase);
  }
};

TEST_F(MathUtilHistory, PairsCombineByIndexOnTheFirstOperandsTimes) {
  odb_HistoryRegion& region = Region("R");
  const odb_HistoryOutput h = Output(region, "U1", 5, 1.0f), k = Output(region, "U2", 5, -3.0f);
  const odb_HistoryOutput combined = 2.0f * h + k;
  EXPECT_EQ(combined.name(), "2  *  U1  +  U2");
  EXPECT_FALSE(combined.isAttached());
  const odb_HistoryData data = combined.data();
  ASSERT_EQ(data.size(), 5);
  for (int i = 0; i < 5; ++i) {
    const double t = 0.1 * (i + 1);
    EXPECT_EQ(data.time(i), t);
    EXPECT_FLOAT_EQ(data.value(i), float(2 * (10 * t + 1) + (10 * t - 3)));
  }
  EXPECT_FLOAT_EQ(sqrt(h).data().value(2), float(std::sqrt(10 * 0.3 + 1)));
  EXPECT_EQ(sqrt(h).name(), " sqrt ( U1 )");
  EXPECT_EQ(MessageOf([&] { log(k); }), "Operand must be greater than zero");
  EXPECT_EQ(MessageOf([&] { h + Output(region, "U3", 4, 0.0f); }),
            "Objects does not have compatible amount of data");
  EXPECT_EQ(MessageOf([&] { h + h.getSubset(0.15); }), "Objects does not have compatible amount of data");
  const odb_HistoryOutput late("L", "", odb_Enum::SCALAR,
                               odb_SequenceSequenceFloat(Grid(5, 2, 1.0f)));
  EXPECT_EQ(MessageOf([&] { h + late; }), "Incompatible data locations");
}

TEST_F(MathUtilHistory, RefusesOtherTypesAndOtherLoadCases) {
  odb_SequenceSequenceFloat pairs = Grid(3, 2, 1.0f);
  const odb_HistoryOutput vector("V", "", odb_Enum::VECTOR, pairs);
  EXPECT_EQ(MessageOf([&] { vector * 2.0f; }), "SCALAR data expected");
  m_step->LoadCase("DEAD");
  m_step->LoadCase("LIVE");
  odb_HistoryRegion& dead = Region("RD", m_step->loadCases()["DEAD"]);
  odb_HistoryRegion& live = Region("RL", m_step->loadCases()["LIVE"]);
  const odb_HistoryOutput g = Output(dead, "U1", 3, 0.0f), q = Output(live, "U1", 3, 1.0f);
  EXPECT_EQ(MessageOf([&] { g + q; }), "Invalid LoadCase");
  EXPECT_FLOAT_EQ((g + g.getSubset(-1.0)).data().value(2), 2 * 3.0f);
  EXPECT_EQ(MessageOf([&] { odb_MathUtil::historyOperation(g, 24); }), "Invalid math operation");
  // Complex histories: the conjugate pairs follow the values.
  const odb_HistoryOutput z("Z", "", odb_Enum::SCALAR, Grid(3, 2, 1.0f), Grid(3, 2, -1.0f));
  const odb_HistoryData conjugate = (z * 3.0f).conjugateData();
  ASSERT_EQ(conjugate.size(), 3);
  EXPECT_FLOAT_EQ(conjugate.value(1), 3 * Entry(-1, 1, 1));
  EXPECT_FLOAT_EQ(complexMagnitude(z).data().value(0), std::hypot(Entry(1, 0, 1), Entry(-1, 0, 1)));
}

TEST(MathUtilOperations, EveryCodeHasItsText) {
  const char* const texts[] = {" * ", " / ", " - ", " + ", " power ", " abs ", " complexMagnitude ",
                               " complexPhase ", " complexReal ", " complexImag ", " acos ",
                               " asin ", " atan ", " cos ", " sin ", " tan ", " degreeToRadian ",
                               " radianToDegree ", " exp ", " exp10 ", " log ", " log10 ",
                               " sqrt ", " transpose "};
  for (int code = 0; code < 24; ++code) EXPECT_STREQ(odb_MathOperationText(code), texts[code]);
  EXPECT_EQ(odb_MathOperationText(24), nullptr);
  EXPECT_EQ(odb_MathOperationText(-1), nullptr);
  EXPECT_EQ(odb_MATH_SQRT, 22);
}
