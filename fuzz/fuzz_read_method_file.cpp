// Reads arbitrary bytes as a method file and checks that the reader ends (read or refused with
// its box) without touching memory it does not own, and that what it read writes out again.
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <string>

#include "core/method/method_file.h"
#include "core/platform/scripted_operator.h"

namespace {

// A plain write: forcing each input to the disk would make the run crawl.
void writeInput(const std::string& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zorvel;
  static const std::string path = "/tmp/zorvel-fuzz-method-" + std::to_string(getpid()) + ".mth";
  writeInput(path, std::string(reinterpret_cast<const char*>(data), size));
  AppState state;
  ScriptedOperator op;
  const bool ok = ReadMethodFile(state, op, path);
  if (ok != op.messages().empty()) __builtin_trap();  // a refusal always says so, once
  if (op.messages().size() > 1) __builtin_trap();
  (void)MethodFileText(state.Method);
  std::remove(path.c_str());
  return 0;
}
