// A temporary folder with the documents that the long run opens. Nothing is saved anywhere else.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace NSSoak {

class CSoakFolder {
 public:
  // Reads the documents (*.sketch) in `from`, makes the folder and makes it the current one. Throws
  // std::exception.
  CSoakFolder(const std::filesystem::path& from, std::size_t documentCount);
  // Removes the folder.
  ~CSoakFolder();
  CSoakFolder(const CSoakFolder&) = delete;
  CSoakFolder& operator=(const CSoakFolder&) = delete;

  // Removes whatever is there and writes all documents, as they were at first.
  void Refresh();
  std::u16string PathOf(std::size_t document) const;

 private:
  std::filesystem::path fFolder;
  std::vector<std::string> fContents;
  std::size_t fDocumentCount;
};

}  // namespace NSSoak
