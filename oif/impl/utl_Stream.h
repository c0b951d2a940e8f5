// utl_Stream: the formatting stream of the input-deck writers. It buffers text, integers and
// real numbers on their way to an output stream and knows the column of the line it is writing,
// so that data lines can be broken before they grow too long.
//
// Settings, given at construction (the deck uses 131, 6, 6):
// - the line width: OptionalLineBreak() ends a data line once the next value could reach it;
// - the upper and lower exponents: a real x is written in fixed notation when
//   10^-lower <= |x| < 10^upper (and for 0), otherwise in scientific notation.
//
// Numbers read back exactly: a real is written with the fewest significant digits that parse
// back to the same value (at most 17 for a double, 9 for a float), and always with a decimal
// point ("1.", "0.25", "1.5e+20", "-3.e-07"), so a reader never takes it for an integer. The
// longest real takes 25 characters ("-0.0000013195150355087822"), the longest integer 11.
//
// One thread at a time; the destructor flushes.
#ifndef UTL_STREAM_H
#define UTL_STREAM_H

#include <cstddef>
#include <ostream>
#include <string>

#include "cow_String.h"
#include "odb_String.h"

class utl_Stream {
 public:
  utl_Stream(std::ostream& out, int lineWidth, int upperExponent, int lowerExponent);
  ~utl_Stream();
  utl_Stream(const utl_Stream&) = delete;
  utl_Stream& operator=(const utl_Stream&) = delete;

  utl_Stream& operator<<(const char* text);
  utl_Stream& operator<<(const std::string& text);
  utl_Stream& operator<<(const cow_String& text);
  utl_Stream& operator<<(const odb_String& text);
  utl_Stream& operator<<(char c);
  utl_Stream& operator<<(int value);
  utl_Stream& operator<<(long long value);
  utl_Stream& operator<<(float value);
  utl_Stream& operator<<(double value);
  utl_Stream& operator<<(utl_Stream& (*manipulator)(utl_Stream&)) { return manipulator(*this); }

  // A real right-aligned in at least `width` characters; fixed notation when
  // |value| < 10^upperExponent (and not below the stream's lower limit).
  void Print(double value, int width, int upperExponent);
  void Print(float value, int width, int upperExponent);
  // An integer right-aligned in at least `width` characters.
  void Print(int value, int width);
  void Print(const char* text) { *this << text; }
  void Print(const cow_String& text) { *this << text; }

  // Ends the line.
  void LineBreak();
  // Ends the line when `room` more characters would pass the line width; writers call it after
  // the comma between two values, so that a long data line continues on the next line (a data
  // line that ends in a comma continues). True when it broke the line.
  bool OptionalLineBreak(int room = 13);
  // Hands everything buffered to the output stream and flushes it.
  void Flush();
  // Characters written on the current line so far.
  int Column() const { return m_column; }
  int LineWidth() const { return m_lineWidth; }

  // Makes the number text s[0..n) (NUL-terminated, with room for one more character) read as a
  // real: inserts a decimal point before the exponent, or at the end, when it has none.
  static void FixNumericString(char* s, int n);

 private:
  void Put(const char* text, std::size_t n);
  int Real(char* out, double value, int upperExponent) const;
  int Real(char* out, float value, int upperExponent) const;
  void Pad(int n, int width);

  std::ostream& m_out;
  int m_lineWidth, m_upper, m_lower;
  std::string m_buffer;
  int m_column = 0;
};

// Ends the line: `stream << utl_endl`.
utl_Stream& utl_endl(utl_Stream& stream);

// Writes a real that computation may have left as a tiny remainder of zero: a value below the
// smallest normal double in magnitude (a subnormal) is written as "0."; any other is written as
// operator<< writes it.
void utl_StreamSmallReal(utl_Stream& stream, double value);

#endif
