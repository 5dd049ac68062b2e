// Arbitrary ports files and bench files: the readers must take any bytes without a crash, and
// whatever the ports file says must come back the same when written out and read again.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "core/app/port_map.h"
#include "sim/bench_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const std::vector<zorvel::PortAssignment> lines = zorvel::ParsePortsFile(text);
  for (const zorvel::PortAssignment& a : lines) {
    if (a.comPort < 1 || a.comPort > 4 || a.device.empty()) std::abort();
  }
  if (zorvel::ParsePortsFile(zorvel::FormatPortsFile(lines)) != lines) std::abort();
  zorvel::BuildPortMap({std::string(text)}, text);

  zorvel::sim::Bench bench;
  std::vector<std::string> problems;
  zorvel::sim::ParseBenchFile(text, bench, problems);
  return 0;
}
