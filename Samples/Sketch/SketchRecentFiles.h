// The files that were opened or saved last, as the document menu offers them. They are kept in the registry
// for the next time.
#pragma once

#include <string>
#include <vector>

namespace NSSketch {

constexpr std::size_t kMaxRecentFiles = 5;

class CSketchRecentFiles {
 public:
  CSketchRecentFiles();

  // The last one first.
  const std::vector<std::u16string>& Paths() const { return fPaths; }
  // `path` is a full one. It comes first.
  void Add(const std::u16string& path);
  // It cannot be opened any more.
  void Remove(const std::u16string& path);

 private:
  void Write() const;

  std::vector<std::u16string> fPaths;
};

}  // namespace NSSketch
