// fuzz_replay CORPUS: runs every file of every target's folder through every target, without a
// fuzzing engine. The last line on standard error before an end by force tells where it was.

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>

#include "fuzz/target.h"

namespace quorvane::fuzz {
namespace {

namespace fs = std::filesystem;

std::string BytesOf(const fs::path& file) {
  std::ifstream in(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

// By their paths, so that the order is the same everywhere.
std::map<std::string, std::string> FilesBelow(const fs::path& folder) {
  std::map<std::string, std::string> files;
  for (const auto& entry : fs::recursive_directory_iterator(folder))
    if (entry.is_regular_file()) files[entry.path().string()] = BytesOf(entry.path());
  return files;
}

void Run(const Target& target, const std::string& file, const std::string& bytes) {
  std::fprintf(stderr, "%s: %s\n", target.name, file.c_str());
  target.run(Input({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()}));
}

int Replay(const fs::path& corpus) {
  const auto files = FilesBelow(corpus);
  for (const Target& target : Targets()) {
    if (!fs::is_directory(corpus / target.name) || fs::is_empty(corpus / target.name)) {
      std::fprintf(stderr, "%s has no files in %s\n", target.name, corpus.c_str());
      return 1;
    }
    for (const auto& [file, bytes] : files) Run(target, file, bytes);
  }
  std::printf("%zu targets, %zu files: %zu executions\n", Targets().size(), files.size(),
              Targets().size() * files.size());
  return 0;
}

}  // namespace
}  // namespace quorvane::fuzz

int main(int count, char** words) {
  if (count != 2) {
    std::fputs("usage: fuzz_replay CORPUS\n", stderr);
    return 2;
  }
  return quorvane::fuzz::Replay(words[1]);
}
