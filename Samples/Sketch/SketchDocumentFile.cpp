#include "SketchDocumentFile.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <utility>

namespace NSSketch {

namespace {

constexpr std::array<std::string_view, kShapeKindCount> kKindNames = {"line",     "rectangle", "ellipse",
                                                                      "polyline", "text",      "picture"};
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// What is wrong with a line.
struct XFormat {
  std::string fText;
};

[[noreturn]] void Fail(std::string text) { throw XFormat{std::move(text)}; }

// The length of the character at the front of a text in UTF-8, or 0 if there is none.
std::size_t CharacterLength(std::string_view text) {
  const auto byte = [text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  if (byte(0) < 0x80) return 1;
  const std::size_t length = byte(0) >= 0xF0 ? 4 : byte(0) >= 0xE0 ? 3 : 2;
  if (byte(0) < 0xC2 || byte(0) > 0xF4 || text.size() < length) return 0;
  for (std::size_t i = 1; i < length; ++i)
    if ((byte(i) & 0xC0) != 0x80) return 0;
  const bool tooLong = (byte(0) == 0xE0 && byte(1) < 0xA0) || (byte(0) == 0xF0 && byte(1) < 0x90);
  const bool surrogate = byte(0) == 0xED && byte(1) >= 0xA0;
  const bool beyond = byte(0) == 0xF4 && byte(1) >= 0x90;
  return tooLong || surrogate || beyond ? 0 : length;
}

void CheckCharacters(std::string_view line) {
  for (std::size_t i = 0; i < line.size();) {
    const std::size_t length = CharacterLength(line.substr(i));
    if (length == 0) Fail("this is not UTF-8 text");
    const auto byte = static_cast<unsigned char>(line[i]);
    if ((byte < ' ' && byte != '\t') || byte == 127) Fail("there is a control character in it");
    i += length;
  }
}

bool IsBlank(char c) { return c == ' ' || c == '\t'; }

// A word of the file in quotes, for a message; a long one is cut.
std::string Quoted(std::string_view word) {
  std::size_t length = 0;
  while (length < word.size() && length < 40)
    length += std::max<std::size_t>(CharacterLength(word.substr(length)), 1);
  return "\"" + std::string(word.substr(0, length)) + (length < word.size() ? "..." : "") + "\"";
}

// --- The words of a line

class CWords {
 public:
  explicit CWords(std::string_view line) : fRest(line) { SkipBlanks(); }

  bool AtEnd() const { return fRest.empty(); }
  bool AtText() const { return !fRest.empty() && fRest.front() == '"'; }
  bool AtRow() const { return !fRest.empty() && fRest.front() == '#'; }
  // A number, or something that was meant to be one: neither a text, nor a row, nor an attribute.
  bool AtNumber() const {
    return !AtEnd() && !AtText() && !AtRow() && Peek().find('=') == std::string_view::npos;
  }

  std::string_view Next() {
    const std::string_view word = Peek();
    fRest.remove_prefix(word.size());
    SkipBlanks();
    return word;
  }

  std::string NextText() {
    std::string text;
    std::size_t i = 1;
    for (; i < fRest.size() && fRest[i] != '"'; ++i) {
      char c = fRest[i];
      if (c == '\\') {
        ++i;
        if (i == fRest.size() || (fRest[i] != '"' && fRest[i] != '\\' && fRest[i] != 'n'))
          Fail("in a text, a backslash needs a quote, a backslash or an n behind it");
        c = fRest[i] == 'n' ? '\n' : fRest[i];
      }
      if (c == '\t') Fail("there is a control character in it");
      text += c;
    }
    if (i == fRest.size()) Fail("the text has no closing quote");
    fRest.remove_prefix(i + 1);
    if (!AtEnd() && !IsBlank(fRest.front())) Fail("a blank is missing behind the text");
    SkipBlanks();
    if (text.size() > kMaxTextBytes)
      Fail("the text has more than " + std::to_string(kMaxTextBytes) + " bytes");
    return text;
  }

 private:
  std::string_view Peek() const {
    return fRest.substr(
        0, static_cast<std::size_t>(std::find_if(fRest.begin(), fRest.end(), IsBlank) - fRest.begin()));
  }
  void SkipBlanks() {
    while (!fRest.empty() && IsBlank(fRest.front())) fRest.remove_prefix(1);
  }

  std::string_view fRest;
};

std::int32_t ParseNumber(std::string_view word, std::int32_t least, std::int32_t most) {
  std::int32_t number = 0;
  const char* const end = word.data() + word.size();
  const auto result = std::from_chars(word.data(), end, number);
  if (result.ptr != end || result.ec == std::errc::invalid_argument)
    Fail(Quoted(word) + " is not a whole number");
  if (result.ec != std::errc() || number < least || number > most)
    Fail(Quoted(word) + " is out of range: " + std::to_string(least) + " to " + std::to_string(most));
  return number;
}

TSketchColor ParseColor(std::string_view word) {
  TSketchColor color = 0;
  const char* const end = word.data() + word.size();
  if (word.size() != 7 || word.front() != '#' || std::from_chars(word.data() + 1, end, color, 16).ptr != end)
    Fail(Quoted(word) + " is not a color like #2F6FDE");
  return color;
}

// The numbers of a statement, whose count the caller judges.
std::vector<std::int32_t> ParseNumbers(CWords& words, std::int32_t least, std::int32_t most) {
  std::vector<std::int32_t> numbers;
  while (words.AtNumber()) {
    if (numbers.size() == 2 * kMaxPoints)
      Fail("there are more than " + std::to_string(kMaxPoints) + " points");
    numbers.push_back(ParseNumber(words.Next(), least, most));
  }
  return numbers;
}

void RequireEnd(const CWords& words, std::string_view statement) {
  if (!words.AtEnd()) Fail("there is more than " + std::string(statement) + " takes");
}

// --- Shapes

std::vector<TSketchPoint> ParsePoints(CWords& words, TShapeKind kind) {
  const std::vector<std::int32_t> numbers = ParseNumbers(words, -kMaxCoordinate, kMaxCoordinate);
  const std::string name(NameOfKind(kind));
  if (kind == TShapeKind::kText) {
    if (numbers.size() != 2) Fail("text needs two numbers and a text in quotes");
  } else if (kind == TShapeKind::kPolyline) {
    if (numbers.size() < 4) Fail("polyline needs two points or more");
    if (numbers.size() % 2 != 0) Fail("polyline needs an even count of numbers");
  } else if (numbers.size() != 4) {
    Fail(name + " needs four numbers");
  }
  std::vector<TSketchPoint> points;
  points.reserve(numbers.size() / 2);
  for (std::size_t i = 0; i < numbers.size(); i += 2) points.push_back({numbers[i], numbers[i + 1]});
  if (kind == TShapeKind::kRectangle || kind == TShapeKind::kEllipse || kind == TShapeKind::kPicture) {
    if (points[0].fX > points[1].fX || points[0].fY > points[1].fY)
      Fail(name + " needs left, top, right, bottom, in this order");
  }
  return points;
}

CSharedPicture ParsePicture(CWords& words) {
  constexpr std::size_t kDigits = 6;
  TSketchPicture picture;
  while (words.AtRow()) {
    const std::string_view row = words.Next().substr(1);
    if (row.empty() || row.size() % kDigits != 0) Fail("a row of pixels needs six digits for each");
    const std::size_t width = row.size() / kDigits;
    if (picture.fHeight > 0 && width != picture.fWidth) Fail("the rows of a picture must be equally long");
    picture.fWidth = static_cast<std::uint32_t>(width);
    ++picture.fHeight;
    if (std::max<std::size_t>(width, picture.fHeight) > kMaxPictureSide ||
        picture.fPixels.size() + width > kMaxPicturePixels)
      Fail("a picture has " + std::to_string(kMaxPictureSide) + " pixels a side at most, and " +
           std::to_string(kMaxPicturePixels) + " in all");
    for (const char* digits = row.data(); digits != row.data() + row.size(); digits += kDigits) {
      std::uint32_t pixel = 0;
      if (std::from_chars(digits, digits + kDigits, pixel, 16).ptr != digits + kDigits)
        Fail(Quoted({digits, kDigits}) + " is not a pixel like 2F6FDE");
      picture.fPixels.push_back(pixel);
    }
  }
  if (picture.fHeight == 0) Fail("picture needs four numbers and rows of pixels like #FF000000FF00");
  return CSharedPicture(std::move(picture));
}

void ParseAttribute(std::string_view word, TShape& shape, std::vector<std::string_view>& seen) {
  const std::size_t equals = word.find('=');
  const std::string_view name = word.substr(0, equals);
  if (equals == std::string_view::npos) Fail(Quoted(word) + " is neither a number nor an attribute");
  if (std::find(seen.begin(), seen.end(), name) != seen.end()) Fail(Quoted(name) + " is given twice");
  seen.push_back(name);

  const bool isText = shape.fKind == TShapeKind::kText;
  const std::string_view value = word.substr(equals + 1);
  if (name == "color")
    shape.fColor = ParseColor(value);
  else if (name == "width" && !isText)
    shape.fWidth = ParseNumber(value, 0, kMaxLineWidth);
  else if (name == "fill" && CanBeFilled(shape.fKind))
    shape.fFill = ParseColor(value);
  else if (name == "size" && isText)
    shape.fSize = ParseNumber(value, 1, kMaxTextSize);
  else if (name == "width" || name == "fill" || name == "size")
    Fail(std::string(NameOfKind(shape.fKind)) + " has no " + std::string(name));
  else
    Fail("there is no attribute " + Quoted(name));
}

TShape ParseShape(TShapeKind kind, CWords& words) {
  TShape shape;
  shape.fKind = kind;
  shape.fPoints = ParsePoints(words, kind);
  if (kind == TShapeKind::kText) {
    if (!words.AtText()) Fail("text needs two numbers and a text in quotes");
    shape.fText = words.NextText();
  }
  if (kind == TShapeKind::kPicture) shape.fPicture = ParsePicture(words);
  std::vector<std::string_view> seen;
  while (!words.AtEnd()) ParseAttribute(words.Next(), shape, seen);
  return shape;
}

bool FindKind(std::string_view name, TShapeKind& outKind) {
  const auto found = std::find(kKindNames.begin(), kKindNames.end(), name);
  if (found == kKindNames.end()) return false;
  outKind = static_cast<TShapeKind>(found - kKindNames.begin());
  return true;
}

std::string_view WithoutLineEnd(std::string_view line) {
  if (!line.empty() && line.back() == '\n') line.remove_suffix(1);
  if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
  return line;
}

// --- Reading

class CReader {
 public:
  // Takes the next line, with its line end.
  void Take(std::string_view line) {
    const std::string_view content = WithoutLineEnd(line);
    CheckCharacters(content);
    CWords words(content);
    if (words.AtEnd() || content[content.find_first_not_of(" \t")] == '#') {
      fNotes += line;
      return;
    }
    const std::string_view statement = words.Next();
    TShapeKind kind;
    if (FindKind(statement, kind)) {
      if (fShapes.size() == kMaxShapes) Fail("there are more than " + std::to_string(kMaxShapes) + " shapes");
      fShapes.push_back({ParseShape(kind, words), std::move(fNotes), std::string(line)});
      fNotes.clear();
      fPicturePixels += fShapes.back().fShape.fPicture.CountOfPixels();
      if (fPicturePixels > kMaxAllPicturePixels)
        Fail("the pictures have more than " + std::to_string(kMaxAllPicturePixels) + " pixels");
    } else if (statement == "canvas") {
      TakeHeadLine(THeadLineKind::kCanvas, statement, line);
      const std::vector<std::int32_t> numbers = ParseNumbers(words, 1, kMaxCanvasSide);
      if (numbers.size() != 2) Fail("canvas needs two numbers");
      RequireEnd(words, statement);
      fDocument.SetCanvasSize({numbers[0], numbers[1]});
    } else if (statement == "background") {
      TakeHeadLine(THeadLineKind::kBackground, statement, line);
      if (words.AtEnd()) Fail("background needs a color");
      fDocument.SetBackground(ParseColor(words.Next()));
      RequireEnd(words, statement);
    } else {
      Fail("there is no shape " + Quoted(statement));
    }
  }

  CSketchDocument Finish(bool hasByteOrderMark, std::string lineEnd) {
    for (TShapeEntry& entry : fShapes) fDocument.InsertShape(fDocument.Shapes().size(), std::move(entry));
    fDocument.SetFileParts({hasByteOrderMark, std::move(lineEnd), std::move(fHead), std::move(fNotes)});
    return std::move(fDocument);
  }

 private:
  void TakeHeadLine(THeadLineKind kind, std::string_view statement, std::string_view line) {
    const std::string name(statement);
    if (!fShapes.empty()) Fail(name + " must stand in front of the first shape");
    if (std::any_of(fHead.begin(), fHead.end(),
                    [kind](const THeadLine& headLine) { return headLine.fKind == kind; }))
      Fail(name + " is given twice");
    if (!fNotes.empty()) fHead.push_back({THeadLineKind::kNotes, std::move(fNotes)});
    fNotes.clear();
    fHead.push_back({kind, std::string(line)});
  }

  CSketchDocument fDocument;
  std::vector<THeadLine> fHead;
  std::vector<TShapeEntry> fShapes;
  std::string fNotes;  // since the last statement
  std::size_t fPicturePixels = 0;
};

// --- Writing

std::string ColorText(TSketchColor color) {
  char text[16];
  std::snprintf(text, sizeof(text), "#%06X", static_cast<unsigned>(color & 0xFFFFFF));
  return text;
}

std::string FormatShape(const TShape& shape) {
  const TShape defaults;
  std::string line(NameOfKind(shape.fKind));
  for (const TSketchPoint& point : shape.fPoints)
    line += " " + std::to_string(point.fX) + " " + std::to_string(point.fY);
  if (shape.fKind == TShapeKind::kText) {
    line += " \"";
    for (const char c : shape.fText) {
      if (c == '"' || c == '\\' || c == '\n') line += '\\';
      line += c == '\n' ? 'n' : c;
    }
    line += '"';
    if (shape.fSize != defaults.fSize) line += " size=" + std::to_string(shape.fSize);
  }
  if (const TSketchPicture* const picture = shape.fPicture.Get()) {
    for (std::size_t i = 0; i < picture->fPixels.size(); ++i) {
      if (i % picture->fWidth == 0) line += " #";
      for (int shift = 20; shift >= 0; shift -= 4)
        line += "0123456789ABCDEF"[picture->fPixels[i] >> shift & 0xF];
    }
  }
  if (shape.fColor != defaults.fColor) line += " color=" + ColorText(shape.fColor);
  if (shape.fKind != TShapeKind::kText && shape.fWidth != defaults.fWidth)
    line += " width=" + std::to_string(shape.fWidth);
  if (shape.fFill) line += " fill=" + ColorText(*shape.fFill);
  return line;
}

// Whether the line of a file still says what the shape is.
bool SaysTheSame(const std::string& line, const TShape& shape) {
  CWords words(WithoutLineEnd(line));
  TShapeKind kind;
  if (words.AtEnd() || !FindKind(words.Next(), kind) || kind != shape.fKind) return false;
  try {
    return ParseShape(kind, words) == shape;
  } catch (const XFormat&) {
    return false;
  }
}

class CWriter {
 public:
  explicit CWriter(const CSketchDocument& document) : fDocument(document) {}

  std::string Write() {
    const CSketchDocument::TFileParts& parts = fDocument.FileParts();
    if (parts.fHasByteOrderMark) fOut += kByteOrderMark;
    fStart = fOut.size();
    WriteHead();
    for (const TShapeEntry& entry : fDocument.Shapes()) {
      Add(entry.fNotes);
      if (SaysTheSame(entry.fLine, entry.fShape))
        Add(entry.fLine);
      else
        AddNewLine(FormatShape(entry.fShape));
    }
    Add(parts.fEndNotes);
    return std::move(fOut);
  }

 private:
  void WriteHead() {
    const CSketchDocument defaults;
    const TSketchSize size = fDocument.CanvasSize();
    const std::string canvas = "canvas " + std::to_string(size.fWidth) + " " + std::to_string(size.fHeight);
    const std::string background = "background " + ColorText(fDocument.Background());
    bool hasCanvas = false;
    bool hasBackground = false;
    for (const THeadLine& line : fDocument.FileParts().fHead) {
      CWords words(WithoutLineEnd(line.fText));
      if (line.fKind == THeadLineKind::kCanvas) {
        hasCanvas = true;
        words.Next();
        const std::int32_t width = ParseNumber(words.Next(), 1, kMaxCanvasSide);
        const std::int32_t height = ParseNumber(words.Next(), 1, kMaxCanvasSide);
        if (TSketchSize{width, height} != size) {
          AddNewLine(canvas);
          continue;
        }
      } else if (line.fKind == THeadLineKind::kBackground) {
        hasBackground = true;
        words.Next();
        if (ParseColor(words.Next()) != fDocument.Background()) {
          AddNewLine(background);
          continue;
        }
      }
      Add(line.fText);
    }
    if (!hasCanvas && size != defaults.CanvasSize()) AddNewLine(canvas);
    if (!hasBackground && fDocument.Background() != defaults.Background()) AddNewLine(background);
  }

  // Adds lines as they were read. What was the last line of a file may have had no line end, or half of one.
  void Add(std::string_view lines) {
    if (lines.empty()) return;
    if (fOut.size() > fStart && fOut.back() == '\r')
      fOut += '\n';
    else if (fOut.size() > fStart && fOut.back() != '\n')
      fOut += fDocument.FileParts().fLineEnd;
    fOut += lines;
  }
  void AddNewLine(const std::string& line) { Add(line + fDocument.FileParts().fLineEnd); }

  const CSketchDocument& fDocument;
  std::string fOut;
  std::size_t fStart = 0;
};

}  // namespace

std::string_view NameOfKind(TShapeKind kind) { return kKindNames[static_cast<std::size_t>(kind)]; }

bool ReadSketchDocument(std::string_view bytes, CSketchDocument& outDocument, std::string& outMessage) {
  const bool hasByteOrderMark = bytes.starts_with(kByteOrderMark);
  if (hasByteOrderMark) bytes.remove_prefix(kByteOrderMark.size());
  const std::size_t firstEnd = bytes.find('\n');
  const bool hasCarriageReturns =
      firstEnd != std::string_view::npos && firstEnd > 0 && bytes[firstEnd - 1] == '\r';

  CReader reader;
  std::size_t lineNumber = 0;
  try {
    while (!bytes.empty()) {
      ++lineNumber;
      const std::size_t end = bytes.find('\n');
      const std::string_view line = bytes.substr(0, end == std::string_view::npos ? end : end + 1);
      reader.Take(line);
      bytes.remove_prefix(line.size());
    }
  } catch (const XFormat& problem) {
    outMessage = "line " + std::to_string(lineNumber) + ": " + problem.fText;
    return false;
  }
  outDocument = reader.Finish(hasByteOrderMark, hasCarriageReturns ? "\r\n" : "\n");
  return true;
}

std::string WriteSketchDocument(const CSketchDocument& document) { return CWriter(document).Write(); }

}  // namespace NSSketch
