#include "utl_Stream.h"

#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>

namespace {

// Flushed to the output stream once this much is buffered.
constexpr std::size_t kBufferSize = 1 << 16;
// The longest real: sign, 17 digits, point, "e-308", and the point FixNumericString may add.
constexpr int kRealRoom = 32;

// 10^e for the fixed-notation test, exactly for the exponents in use.
double Power10(int e) {
  return std::pow(10.0, e);
}

template <class Real>
int Format(char* out, Real value, int upper, int lower) {
  const Real magnitude = std::fabs(value);
  const bool fixed = value == 0 || (magnitude < Power10(upper) && magnitude >= Power10(-lower));
  const std::to_chars_result r =
      std::to_chars(out, out + kRealRoom - 2, value,
                    fixed ? std::chars_format::fixed : std::chars_format::scientific);
  const int n = static_cast<int>(r.ptr - out);
  out[n] = '\0';
  utl_Stream::FixNumericString(out, n);
  return static_cast<int>(std::strlen(out));
}

}  // namespace

utl_Stream::utl_Stream(std::ostream& out, int lineWidth, int upperExponent, int lowerExponent)
    : m_out(out), m_lineWidth(lineWidth), m_upper(upperExponent), m_lower(lowerExponent) {
  m_buffer.reserve(kBufferSize + 256);
}

utl_Stream::~utl_Stream() {
  Flush();
}

void utl_Stream::Put(const char* text, std::size_t n) {
  m_buffer.append(text, n);
  // The column counts from the last line end written.
  const void* end = n ? std::memchr(text, '\n', n) : nullptr;
  if (!end) {
    m_column += static_cast<int>(n);
  } else {
    const char* last = text + n;
    while (last[-1] != '\n') --last;
    m_column = static_cast<int>(text + n - last);
  }
  if (m_buffer.size() >= kBufferSize) {
    m_out.write(m_buffer.data(), static_cast<std::streamsize>(m_buffer.size()));
    m_buffer.clear();
  }
}

utl_Stream& utl_Stream::operator<<(const char* text) {
  Put(text, std::strlen(text));
  return *this;
}

utl_Stream& utl_Stream::operator<<(const std::string& text) {
  Put(text.data(), text.size());
  return *this;
}

utl_Stream& utl_Stream::operator<<(const cow_String& text) {
  Put(text.CStr(), std::strlen(text.CStr()));
  return *this;
}

utl_Stream& utl_Stream::operator<<(const odb_String& text) {
  return *this << text.CStr();
}

utl_Stream& utl_Stream::operator<<(char c) {
  Put(&c, 1);
  return *this;
}

utl_Stream& utl_Stream::operator<<(int value) {
  char text[16];
  const std::to_chars_result r = std::to_chars(text, text + sizeof text, value);
  Put(text, static_cast<std::size_t>(r.ptr - text));
  return *this;
}

utl_Stream& utl_Stream::operator<<(long long value) {
  char text[24];
  const std::to_chars_result r = std::to_chars(text, text + sizeof text, value);
  Put(text, static_cast<std::size_t>(r.ptr - text));
  return *this;
}

int utl_Stream::Real(char* out, double value, int upperExponent) const {
  return Format(out, value, upperExponent, m_lower);
}

int utl_Stream::Real(char* out, float value, int upperExponent) const {
  return Format(out, value, upperExponent, m_lower);
}

utl_Stream& utl_Stream::operator<<(double value) {
  char text[kRealRoom];
  Put(text, static_cast<std::size_t>(Real(text, value, m_upper)));
  return *this;
}

utl_Stream& utl_Stream::operator<<(float value) {
  char text[kRealRoom];
  Put(text, static_cast<std::size_t>(Real(text, value, m_upper)));
  return *this;
}

void utl_Stream::Pad(int n, int width) {
  for (; n < width; ++n) Put(" ", 1);
}

void utl_Stream::Print(double value, int width, int upperExponent) {
  char text[kRealRoom];
  const int n = Real(text, value, upperExponent);
  Pad(n, width);
  Put(text, static_cast<std::size_t>(n));
}

void utl_Stream::Print(float value, int width, int upperExponent) {
  char text[kRealRoom];
  const int n = Real(text, value, upperExponent);
  Pad(n, width);
  Put(text, static_cast<std::size_t>(n));
}

void utl_Stream::Print(int value, int width) {
  char text[16];
  const std::to_chars_result r = std::to_chars(text, text + sizeof text, value);
  const int n = static_cast<int>(r.ptr - text);
  Pad(n, width);
  Put(text, static_cast<std::size_t>(n));
}

void utl_Stream::LineBreak() {
  Put("\n", 1);
}

bool utl_Stream::OptionalLineBreak(int room) {
  if (m_column + room <= m_lineWidth) return false;
  LineBreak();
  return true;
}

void utl_Stream::Flush() {
  if (!m_buffer.empty())
    m_out.write(m_buffer.data(), static_cast<std::streamsize>(m_buffer.size()));
  m_buffer.clear();
  m_out.flush();
}

void utl_Stream::FixNumericString(char* s, int n) {
  int exponent = n;
  for (int i = 0; i < n; ++i) {
    if (s[i] == '.') return;
    if (s[i] == 'e' || s[i] == 'E') {
      exponent = i;
      break;
    }
    if (s[i] == 'n' || s[i] == 'i') return;  // nan, inf: no point to add
  }
  std::memmove(s + exponent + 1, s + exponent, static_cast<std::size_t>(n - exponent + 1));
  s[exponent] = '.';
}

utl_Stream& utl_endl(utl_Stream& stream) {
  stream.LineBreak();
  return stream;
}

void utl_StreamSmallReal(utl_Stream& stream, double value) {
  if (value != 0 && std::fabs(value) < std::numeric_limits<double>::min())
    stream << "0.";
  else
    stream << value;
}
