// The clipboard: formats, sizes, failures, other programs.
#include <cstring>
#include <thread>

#include "Support/ClientWindows.h"
#include "Support/PatchedImport.h"

namespace NSMorvaneTest {

class ClipboardTest : public ClientWindowTest {
 protected:
  using Bytes = std::string;

  // Bytes that are not given, and some that cannot be read.
  static constexpr const char* kRefused = "refused";
  static constexpr const char* kUnreadable = "unreadable";

  struct Data : IData {
    Data(const Bytes& bytes, const std::shared_ptr<int>& life) : fBytes(bytes), fLife(life) {}
    std::uint32_t IData_CheckInvariant() const override { return 1; }
    TError IData_GetSize(std::uint64_t& out) override {
      out = fBytes.size();
      return kOK;
    }
    TError IData_Read(std::uint64_t offset, std::uint64_t size, void* buffer) override {
      EXPECT_LE(offset + size, fBytes.size());
      EXPECT_EQ(std::exchange(fIsRead, true), false);
      if (fBytes == kUnreadable) return TError(100322);
      if (size) std::memcpy(buffer, fBytes.data() + offset, static_cast<std::size_t>(size));
      return kOK;
    }
    const Bytes fBytes;
    const std::shared_ptr<int> fLife;
    bool fIsRead = false;
  };
  // Gives the data of each format from a map, or what a test answers in its place.
  using Answer = std::function<IData*(TError&)>;
  struct Getter : IClipboardDataGetter {
    IData* IClipboardDataGetter_GetData(const TClipboardFormat& format, TError& outError) override {
      if (fAnswer) return fAnswer(outError);
      const Bytes& bytes = fData.at(std::string(format.fTag, strnlen(format.fTag, sizeof(format.fTag))));
      outError = bytes == kRefused ? TError(100321) : kOK;
      return outError == kOK ? new Data(bytes, fLife) : nullptr;
    }
    std::map<std::string, Bytes> fData;
    Answer fAnswer;
    std::shared_ptr<int> fLife;
  };

  static TClipboardFormat Format(const std::string& tag) {
    TClipboardFormat format = {};
    tag.copy(format.fTag, sizeof(format.fTag));
    return format;
  }
  static Bytes Units(const std::u16string& text) {
    return Bytes(reinterpret_cast<const char*>(text.data()), text.size() * sizeof(TChar));
  }
  TError Put(const std::map<std::string, Bytes>& data, const Answer& answer = nullptr) {
    std::vector<TClipboardFormat> formats;
    for (const auto& [tag, bytes] : data) formats.push_back(Format(tag));
    Getter* const getter = new Getter;
    getter->fData = data;
    getter->fAnswer = answer;
    getter->fLife = fLife;
    const TError error = fMorvane->IMorvane_ReplaceClipboardContents(
        formats.data(), static_cast<std::uint32_t>(formats.size()), getter);
    if (error != kOK) delete getter;
    EXPECT_EQ(fLife.use_count(), 1) << "the library deletes what it takes";
    return error;
  }
  bool IsThere(const std::string& tag) {
    TFlag exists = 2;
    EXPECT_EQ(fMorvane->IMorvane_IsFormatOnClipboard(Format(tag), exists), kOK) << tag;
    return exists == 1;
  }
  std::unique_ptr<IData> Open(const std::string& tag, TError wanted = kOK) {
    TError error = kOtherError;
    std::unique_ptr<IData> data(fMorvane->IMorvane_GetClipboardData(Format(tag), error));
    EXPECT_EQ(error, wanted) << tag;
    EXPECT_EQ(data != nullptr, wanted == kOK);
    return data;
  }
  Bytes Get(const std::string& tag) {
    const std::unique_ptr<IData> data = Open(tag);
    if (!data) return "(none)";
    std::uint64_t size = 0;
    EXPECT_EQ(data->IData_GetSize(size), kOK);
    Bytes bytes(static_cast<std::size_t>(size), '?');
    EXPECT_EQ(data->IData_Read(0, size, bytes.data()), kOK);
    return bytes;  // with what the system has rounded the block up to
  }

  const std::shared_ptr<int> fLife = std::make_shared<int>();  // in use by what is not deleted
};

TEST_IN_RUN(ClipboardTest, EveryFormat) {
  const Bytes text = Units(std::u16string(u"Gr\xFC\xDF\x65 \xD83D\xDE00\0", 9));
  const std::map<std::string, Bytes> all = {
      {"utxt", text},           {"TEXT", Bytes("abc\0", 4)},  {"WAVE", "w"}, {"RIFF", "r"},
      {"DIBB", Bytes(44, 'd')}, {"mine", Bytes("\0\1\2", 3)}, {"x", "one"}};
  ASSERT_EQ(Put(all), kOK);
  for (const auto& [tag, bytes] : all) {
    EXPECT_TRUE(IsThere(tag)) << tag;
    EXPECT_EQ(Get(tag).substr(0, bytes.size()), bytes) << tag;
  }
  for (const char* const absent : {"FURL", "none", "nine"}) {
    EXPECT_FALSE(IsThere(absent)) << absent;
    Open(absent, kProgrammingError);
  }
  // An array without a terminator is read to its end; a name has ASCII letters only.
  ASSERT_EQ(Put({{"abcde", "5"}}), kOK);
  EXPECT_EQ(Get("abcde").substr(0, 1), "5");
  TFlag exists;
  EXPECT_EQ(fMorvane->IMorvane_IsFormatOnClipboard(Format("\xFC"), exists), kOtherError);
  // Nothing at all.
  ASSERT_EQ(Put({}), kOK);
  EXPECT_EQ(CountClipboardFormats(), 0);
  EXPECT_EQ(fMorvane->IMorvane_ReplaceClipboardContents(nullptr, 0, nullptr), kOK);
  // A bitmap is a handle, and no bytes.
  EXPECT_TRUE(OpenClipboard(nullptr));
  EXPECT_TRUE(SetClipboardData(CF_BITMAP, CreateBitmap(16, 16, 1, 1, nullptr)));
  CloseClipboard();
  EXPECT_EQ(Put({{"HBMP", "x"}}), kUnsupportedFormatError);
  EXPECT_TRUE(IsThere("HBMP"));
  Open("HBMP", kUnsupportedFormatError);
  EXPECT_EQ(fOutput.TakeAssertions(), "");
}

TEST_IN_RUN(ClipboardTest, SizesAndReaders) {
  // A text gets the end that it lacks, for programs that look for it; half a unit is none.
  ASSERT_EQ(Put({{"utxt", Units(u"ab")}}), kOK);
  EXPECT_EQ(Get("utxt").substr(0, 6), Units(std::u16string(u"ab\0", 3)));
  EXPECT_EQ(Put({{"utxt", "abc"}}), kBadInputProgrammingError);
  ASSERT_EQ(Put({{"TEXT", "ab"}}), kOK);
  EXPECT_EQ(Get("TEXT").substr(0, 3), Bytes("ab\0", 3));
  EXPECT_EQ(fOutput.TakeAssertions(), "");
  // Nothing cannot be kept in a block of memory.
  EXPECT_NE(Put({{"none", ""}}), kOK);
  EXPECT_TRUE(fOutput.TakeAssertions().starts_with("size>0"));
  const Bytes large(64 << 20, 'l');
  ASSERT_EQ(Put({{"larg", large}}), kOK);
  EXPECT_EQ(Get("larg").compare(0, large.size(), large), 0);
  // A reader outlives what it was made of.
  ASSERT_EQ(Put({{"mine", "first"}}), kOK);
  const std::unique_ptr<IData> data = Open("mine");
  ASSERT_EQ(Put({{"mine", "other one"}}), kOK);
  char buffer[5] = {};
  EXPECT_EQ(data->IData_Read(0, 5, buffer), kOK);
  EXPECT_EQ(Bytes(buffer, 5), "first");
  std::uint64_t size = 0;
  EXPECT_EQ(data->IData_GetSize(size), kOK);
  for (const auto& [offset, count] :
       {std::pair<std::uint64_t, std::uint64_t>{0, size + 1}, {size, 1}, {UINT64_MAX, 2}, {1, UINT64_MAX}})
    EXPECT_EQ(data->IData_Read(offset, count, buffer), kBadInputProgrammingError) << offset;
  EXPECT_EQ(data->IData_Read(size, 0, buffer), kOK);
}

TEST_IN_RUN(ClipboardTest, Failures) {
  // What stood before the failing format is there, and nothing else.
  ASSERT_EQ(Put({{"old", "o"}}), kOK);
  EXPECT_EQ(Put({{"a", "1"}, {"b", kRefused}, {"c", "3"}}), TError(100321));
  EXPECT_TRUE(IsThere("a") && !IsThere("b") && !IsThere("c") && !IsThere("old"));
  EXPECT_EQ(fMorvane->IMorvane_ReplaceClipboardContents(nullptr, 1, nullptr), kBadInputProgrammingError);
  fOutput.TakeAssertions();
  // What a getter may get wrong: no code, no data, data that cannot be read, a look at the clipboard.
  EXPECT_EQ(Put({{"a", ""}}, [](TError&) -> IData* { return nullptr; }), kProgrammingError);
  EXPECT_EQ(Put({{"a", ""}},
                [](TError& error) -> IData* {
                  error = kOK;
                  return nullptr;
                }),
            kBadInputProgrammingError);
  EXPECT_EQ(Put({{"a", kUnreadable}}), TError(100322));
  const Answer look = [this](TError& error) {
    TFlag exists = 0;
    EXPECT_EQ(fMorvane->IMorvane_IsFormatOnClipboard(Format("a"), exists),
              kIllegalCallSequenceProgrammingError);
    EXPECT_EQ(fMorvane->IMorvane_ReplaceClipboardContents(nullptr, 0, nullptr),
              kIllegalCallSequenceProgrammingError);
    Open("a", kIllegalCallSequenceProgrammingError);
    error = kOK;
    return new Data("c", fLife);
  };
  EXPECT_EQ(Put({{"a", ""}, {"b", ""}}, look), kOK);
  EXPECT_TRUE(IsThere("a") && IsThere("b"));
  // The system does not take it: what is on its way ends.
  HANDLE(WINAPI* const refuse)
  (UINT, HANDLE) = [](UINT, HANDLE) -> HANDLE {
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return nullptr;
  };
  {
    const PatchedImport patch(L"Morvane.dll", "SetClipboardData", refuse);
    EXPECT_EQ(Put({{"utxt", Units(u"ab")}}), kOutOfMemoryError);
  }
  EXPECT_FALSE(IsThere("utxt"));
  // Another program holds it open, for a while.
  std::atomic<bool> isHeld = false, isThrough = false;
  std::thread other([&] {
    EXPECT_TRUE(OpenClipboard(nullptr));
    for (isHeld = true; !isThrough;) Sleep(1);
    CloseClipboard();
  });
  EXPECT_TRUE(YieldUntil([&] { return isHeld.load(); }));
  EXPECT_EQ(Put({{"a", "2"}}), kOtherError);
  Open("a", kOtherError);
  isThrough = true;
  other.join();
  EXPECT_EQ(Put({{"a", "2"}}), kOK);
  EXPECT_EQ(Get("a").substr(0, 1), "2");
  // For a moment only: it is tried again.
  static int refusals = 3;
  static BOOL(WINAPI* const busy)(HWND) = [](HWND owner) -> BOOL {
    return refusals-- > 0 ? FALSE : OpenClipboard(owner);
  };
  const PatchedImport patched(L"Morvane.dll", "OpenClipboard", busy);
  EXPECT_EQ(Put({{"a", "3"}}), kOK);
  EXPECT_EQ(fOutput.TakeAssertions(), "");
}

TEST_F(ClipboardTest, OutsideARun) {
  CreateMorvane();
  TFlag exists = 0;
  EXPECT_EQ(fMorvane->IMorvane_IsFormatOnClipboard(Format("a"), exists),
            kIllegalCallSequenceProgrammingError);
  Open("a", kIllegalCallSequenceProgrammingError);
  EXPECT_EQ(Put({{"a", "1"}}), kIllegalCallSequenceProgrammingError);
  EXPECT_EQ(fOutput.TakeAssertions(), "0!=fHiderWindow; 0!=fHiderWindow; 0!=fHiderWindow");
}

// As any program reads and writes it.
TEST_IN_RUN(ClipboardTest, OtherPrograms) {
  ASSERT_EQ(Put({{"utxt", Units(std::u16string(u"from the client\0", 16))}, {"mine", "x"}}), kOK);
  EXPECT_TRUE(IsClipboardFormatAvailable(RegisterClipboardFormatW(L"SMUGGLER_mine"))) << "a longer name";
  EXPECT_TRUE(OpenClipboard(nullptr));
  const HANDLE there = GetClipboardData(CF_UNICODETEXT);
  EXPECT_STREQ(static_cast<const wchar_t*>(GlobalLock(there)), L"from the client");
  GlobalUnlock(there);
  EmptyClipboard();
  const HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, sizeof(L"back"));
  std::memcpy(GlobalLock(block), L"back", sizeof(L"back"));
  GlobalUnlock(block);
  EXPECT_TRUE(SetClipboardData(CF_UNICODETEXT, block));
  CloseClipboard();
  EXPECT_EQ(Get("utxt").substr(0, 10), Units(std::u16string(u"back\0", 5)));
}

}  // namespace NSMorvaneTest
