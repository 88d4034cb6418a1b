#include "SoakFolder.h"

#include <windows.h>

#include <fstream>
#include <iterator>
#include <stdexcept>

namespace NSSoak {

namespace {

namespace fs = std::filesystem;

std::string ContentsOf(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(file), {});
}

}  // namespace

CSoakFolder::CSoakFolder(const fs::path& from, std::size_t documentCount)
    : fFolder(fs::temp_directory_path() / ("MorvaneSoak-" + std::to_string(GetCurrentProcessId()))),
      fDocumentCount(documentCount) {
  for (const fs::directory_entry& entry : fs::directory_iterator(from))
    if (entry.path().extension() == ".sketch") fContents.push_back(ContentsOf(entry.path()));
  if (fContents.empty()) throw std::runtime_error("no documents in " + from.string());
  fs::create_directories(fFolder);
  fs::current_path(fFolder);
}

CSoakFolder::~CSoakFolder() {
  std::error_code ignored;
  fs::current_path(fFolder.parent_path(), ignored);
  fs::remove_all(fFolder, ignored);
}

void CSoakFolder::Refresh() {
  for (const fs::directory_entry& entry : fs::directory_iterator(fFolder)) fs::remove_all(entry.path());
  for (std::size_t i = 0; i < fDocumentCount; ++i)
    std::ofstream(fs::path(PathOf(i)), std::ios::binary) << fContents[i % fContents.size()];
}

std::u16string CSoakFolder::PathOf(std::size_t document) const {
  return (fFolder / ("Document " + std::to_string(document) + ".sketch")).u16string();
}

}  // namespace NSSoak
