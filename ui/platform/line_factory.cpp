#include "ui/platform/line_factory.h"

#include "core/platform/tracing_line.h"
#include "core/text/number_format.h"
#include "sim/simulated_line.h"
#include "ui/platform/qt_serial_line.h"

namespace zorvel::ui {

std::unique_ptr<SerialLine> MakeInstrumentLine(const LineRoute& route, Clock& clock,
                                               sim::SimRig& rig) {
  const std::string comName = "COM" + text::plain(route.comPort);
  const std::string device =
      route.ports != nullptr ? route.ports->deviceFor(route.comPort) : DefaultDevice(route.comPort);
  std::unique_ptr<SerialLine> line;
  if (device == kSimulatorDevice) {
    sim::LinePeer* peer = rig.peerFor(route.kind);
    if (peer == nullptr) return nullptr;
    line = std::make_unique<sim::SimulatedLine>(clock, *peer, comName + " (sim)");
  } else {
    line = std::make_unique<QtSerialLine>(clock, comName, device);
  }
  if (route.traceDirectory.empty()) return line;
  std::string path = route.traceDirectory;
  if (path.back() != '/') path += '/';
  path += std::string(InstrumentName(route.kind)) + ".trace";
  return std::make_unique<TracingLine>(std::move(line), clock, path);
}

}  // namespace zorvel::ui
