// Decoding, encoding, templates and numbers of the text package on any bytes.
//
// sources: Component/Portable/TextPackage.cpp Component/Portable/StringScript.cpp
// sources: Component/Portable/MorvaneImplUtils.cpp
#include <algorithm>
#include <cstdlib>
#include <memory>

#include "Component/Portable/StringScript.h"
#include "Component/Portable/TextPackage.h"

using namespace NSTextPackage;

namespace {

void Require(bool condition) {
  if (!condition) std::abort();
}

void CheckDecoding(const std::uint8_t* data, std::size_t size) {
  try {
    const TString text = DecodeUTF8(data, size, u'_');
    // Never more units than bytes; what lies behind the first zero in a lead byte's place adds nothing.
    Require(text.size() <= size);
    // What the encoder writes is readable again, and exactly so without surrogates, whose pairs have a form
    // of their own, and zeros.
    const TString again = UTF8ToString(StringToUTF8(text, false));
    if (std::none_of(text.begin(), text.end(), [](TChar c) { return c == 0 || (c >= 0xD800 && c < 0xE000); }))
      Require(again == text);
  } catch (const XIllegalTextFormat&) {
  }
  try {
    NSStringScript::CRawByteReader reader(data, static_cast<std::uint32_t>(size));
    Require(ReadText(reader, 0, static_cast<std::int64_t>(size), u'_').size() <= size);
  } catch (const XIllegalTextFormat&) {
  }
}

void CheckUnits(const TString& text) {
  const std::string encoded = StringToUTF8(text, true);
  Require(encoded.compare(0, 3, "\xEF\xBB\xBF") == 0 && encoded.size() <= 3 * text.size() + 3);
  const std::string ascii = StringToASCII(text, '?');
  Require(ascii.size() == text.size() && StringToASCII(ASCIIToString(ascii, 0), '#') == ascii);

  const std::size_t count = CountChars(text.data(), text.size());
  Require(count == std::min(text.find(u'\0'), text.size()));
  const std::size_t maximum = text.size() / 2;
  const std::unique_ptr<TChar[]> copy(new TChar[maximum + 1]);
  CopyChars(copy.get(), text.data(), maximum);
  Require(static_cast<std::size_t>(CountChars(copy.get())) == std::min(count, maximum));

  std::int32_t number = 0;
  if (ReadDecimal(text, number)) {
    std::int32_t again = 0;
    Require(ReadDecimal(NumberToString(static_cast<int>(number)), again) && again == number);
  }
}

void CheckTemplate(const TString& text, std::uint32_t base) {
  const std::vector<TString> none;
  const std::vector<TString> marks(12, u"<>");
  const TString bare = FormatText(text, base, none);
  const TString marked = FormatText(text, base, marks);
  Require(bare.size() <= text.size() && marked.size() >= bare.size() &&
          (marked.size() - bare.size()) % 2 == 0);
  if (text.find(u'^') == TString::npos) Require(bare == text);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  CheckDecoding(data, size);

  // The same bytes as units.
  TString units;
  for (std::size_t i = 0; i + 1 < size; i += 2) units += static_cast<TChar>(data[i] | data[i + 1] << 8);
  CheckUnits(units);

  TString narrow(data, data + size);
  CheckUnits(narrow);
  CheckTemplate(narrow, size != 0 ? data[0] % 3 : 0);
  return 0;
}
