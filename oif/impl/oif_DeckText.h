// oif_DeckText: the writing rules that every keyword writer shares: how names are written, how
// label lists are written (the generate test), the set keyword lines, and the datum-system
// parameters; internal.
#ifndef OIF_DECKTEXT_H
#define OIF_DECKTEXT_H

#include <cstddef>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "oif_BuilderComponent.h"
#include "utl_Stream.h"

// The settings of the deck's formatting stream: data lines break before column 131, and reals
// from 1e-6 up to (not including) 1e6 are written in fixed notation.
constexpr int oif_kLineWidth = 131;
constexpr int oif_kUpperExponent = 6;
constexpr int oif_kLowerExponent = 6;

// The text that `write` gives a formatting stream with the deck's settings, for items made
// whole in Prepare().
template <class Write>
std::string oif_Format(Write&& write) {
  std::ostringstream text;
  {
    utl_Stream out(text, oif_kLineWidth, oif_kUpperExponent, oif_kLowerExponent);
    write(out);
  }
  return text.str();
}

// A name as a keyword line writes it: in double quotes when it holds a blank, an apostrophe or a
// comma, as it stands otherwise.
std::string oif_Name(const std::string& name);

// A label list qualifies for ", generate" when it has at least 3 labels with one constant
// difference between neighbours (any difference, zero and negative ones included; the list is
// not sorted). first and last are the list's ends, increment the difference of its first two.
struct oif_Generate {
  bool generate = false;
  int first = 0, last = 0, increment = 0;
};
oif_Generate oif_GenerateTest(const int* labels, std::size_t n);

// The data lines of a label list: "first, last, increment" when it generates; otherwise the
// labels separated by ",", sixteen to a line, a last line of one label ending in ", ". Nothing
// for an empty list.
void oif_WriteLabels(utl_Stream& out, const int* labels, std::size_t n, const oif_Generate& g);

// A set: its keyword line ("*Nset, nset=" or "*Elset, elset=", the name, ", instance=" when it
// has one, ", internal", ", generate") and its label lines, formatted when written.
class oif_SetItem : public oif_DeckItem {
 public:
  enum Kind { NODE, ELEMENT };
  oif_SetItem(Kind kind, std::string name, std::string instance, bool internal,
              std::shared_ptr<const std::vector<int>> labels);
  oif_DeckItem* Copy() const override { return new oif_SetItem(*this); }
  void Write(utl_Stream& out) const override;

 private:
  Kind m_kind;
  std::string m_name, m_instance;
  bool m_internal;
  std::shared_ptr<const std::vector<int>> m_labels;
};

// The parameter that names a datum system's type in a keyword: with `typeForm` "type=C" or
// "type=S" (keywords that take a type parameter), otherwise "system=CYLINDRICAL" or
// "system=SPHERICAL"; "" for a rectangular system. Any other type asserts "Wrong datum type
// during input generation" and gives "".
std::string oif_DatumParameter(int datumType, bool typeForm);

#endif
