// Replays a fuzz target's corpus through the same entry point libFuzzer calls, so that ctest
// runs every input that once found a fault (and the valid examples) in every build, normal and
// sanitized, with no fuzzing engine. Arguments: corpus folders or single input files.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

void replay(const std::filesystem::path& file) {
  std::ifstream in(file, std::ios::binary);
  const std::vector<char> bytes((std::istreambuf_iterator<char>(in)),
                                std::istreambuf_iterator<char>());
  // A copy of exactly the input's size, so that a sanitizer sees any read past its end.
  const std::vector<std::uint8_t> input(bytes.begin(), bytes.end());
  LLVMFuzzerTestOneInput(input.data(), input.size());
}

}  // namespace

int main(int argc, char** argv) {
  std::size_t count = 0;
  for (int i = 1; i < argc; ++i) {
    std::vector<std::filesystem::path> files;
    if (std::filesystem::is_directory(argv[i])) {
      for (const auto& entry : std::filesystem::directory_iterator(argv[i]))
        if (entry.is_regular_file()) files.push_back(entry.path());
    } else {
      files.emplace_back(argv[i]);
    }
    std::sort(files.begin(), files.end());
    for (const auto& file : files) {
      replay(file);
      ++count;
    }
  }
  std::printf("%zu inputs replayed\n", count);
  return count > 0 ? 0 : 1;
}
