// Reopens a data set built from arbitrary bytes: the input is split at NUL bytes into the
// ".FIX" file, the method file and the ".SYN" file; "%M" in a data file stands for the method
// file's path, so that the header can name a method that exists. The reader must end, read or
// refused with one box, without touching memory it does not own.
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include "core/datafiles/data_set_commands.h"
#include "core/platform/scripted_operator.h"

namespace {

// A plain write: forcing each input to the disk would make the run crawl.
void writeInput(const std::string& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;
}

std::vector<std::string> parts(const std::uint8_t* data, std::size_t size) {
  std::vector<std::string> out(1);
  for (std::size_t i = 0; i < size; ++i) {
    if (data[i] == 0 && out.size() < 3) {
      out.emplace_back();
    } else {
      out.back().push_back(static_cast<char>(data[i]));
    }
  }
  out.resize(3);
  return out;
}

std::string withMethodPath(std::string text, const std::string& methodPath) {
  for (std::size_t at = text.find("%M"); at != std::string::npos; at = text.find("%M", at))
    text.replace(at, 2, methodPath), at += methodPath.size();
  return text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zorvel;
  static const std::string base = "/tmp/zorvel-fuzz-set-" + std::to_string(getpid());
  const std::vector<std::string> files = parts(data, size);
  const std::string methodPath = base + ".mth";
  writeInput(base + ".FIX", withMethodPath(files[0], methodPath));
  writeInput(methodPath, files[1]);
  writeInput(base + ".SYN", withMethodPath(files[2], methodPath));
  AppState state;
  FillColourTables(state);
  ScriptedOperator op;
  NoQualityDatabases none;
  const ReopenResult r = ReopenDataFileSet(state, op, base + ".FIX", none);
  if (r.ok != op.messages().empty()) __builtin_trap();
  if (op.messages().size() > 1) __builtin_trap();
  if (r.ok && r.nextSampleNumber != r.lastSampleNumber + 1) __builtin_trap();
  for (const char* ext : {".FIX", ".SYN", ".mth"}) std::remove((base + ext).c_str());
  return 0;
}
