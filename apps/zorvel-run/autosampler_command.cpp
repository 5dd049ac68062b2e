#include <QFileInfo>
#include <array>
#include <optional>

#include "apps/zorvel-run/commands.h"
#include "core/autosampler/maintenance_sequences.h"
#include "core/autosampler/tray_geometry_file.h"
#include "core/files/log_line.h"
#include "core/method/method_file.h"

namespace zorvel::headless {

namespace {

constexpr int kUsageExit = 2;

struct Maintenance {
  const char* word;
  const char* caption;  // the button the desktop window runs it from
  SequenceEnd (MaintenanceSequences::*run)();
};

constexpr std::array<Maintenance, 4> kMaintenance{{
    {"prime", "Prime Pump", &MaintenanceSequences::PrimePump},
    {"rinse", "Check Rinse", &MaintenanceSequences::CheckRinse},
    {"volumes", "Check Volumes", &MaintenanceSequences::CheckVolumes},
    {"test", "Testing", &MaintenanceSequences::Testing},
}};

// The tray of the preferences, or, when they name none, the method's own.
std::optional<std::string> ensureTray(Context& context) {
  AppState& state = context.state;
  const std::string& file = state.Method.Autosampler.TrayDescriptorFile;
  if (state.Tray.positionCount > 0 || file.empty()) return std::nullopt;
  const TrayLoadResult loaded = LoadTrayGeometry(file, state.Tray);
  if (loaded) {
    const std::string note = TrayReachNote(state.Tray, file);
    if (!note.empty()) WriteLogEntry(state.LogPath, context.clock, note);
    return std::nullopt;
  }
  return loaded.message;
}

}  // namespace

int RunAutosamplerCommand(Context& context, LineSource& lines) {
  const Maintenance* chosen = nullptr;
  for (const Maintenance& m : kMaintenance) {
    if (context.options.autosampler == m.word) chosen = &m;
  }
  if (chosen == nullptr) {
    return context.fail("--autosampler takes prime, rinse, volumes or test", kUsageExit);
  }
  AppState& state = context.state;
  const std::string path = QFileInfo(QString::fromStdString(context.options.methodPath))
                               .absoluteFilePath()
                               .toStdString();
  if (!ReadMethodFile(state, context.op, path)) return context.fail("cannot read " + path);
  if (state.Method.DeliveryMethod != Delivery::Autosampler) {
    return context.fail(path + " does not deliver samples by autosampler", kUsageExit);
  }
  if (const auto refused = ensureTray(context)) return context.fail(*refused);

  auto armLine = lines.lineFor(InstrumentKind::Arm, state.Prefs.AutoSampComPort);
  auto pumpLine = lines.lineFor(InstrumentKind::Pump, state.Prefs.DilComPort);
  if (!armLine || !pumpLine)
    return context.fail("the arm's or the dilutor's port cannot be reached");
  Arm arm(*armLine, context.clock, context.op, state.Links, state.Tray);
  Pump pump(*pumpLine, context.clock, context.op, state.Links, state.Method.Autosampler);
  MaintenanceRig rig{arm,         pump,      state.Method.Autosampler, state.Tray, state.Links,
                     state.Steps, context.op};
  MaintenanceSequences sequences(
      rig, SequenceHooks{
               [&context](const std::string& step) { context.out << step << "\n"; }, {}, {}, {}});
  context.out << chosen->caption << "\n";
  const SequenceEnd end = (sequences.*(chosen->run))();
  arm.CloseArmPort();
  pump.ClosePumpPort();
  if (context.op.ended()) return context.op.exitCode();
  // Every message of the whole check has been printed; that it failed is the news, whether or
  // not the answer file had an OK for each box.
  if (end == SequenceEnd::SettingsRefused) {
    return context.fail("the method's autosampler settings do not pass the check");
  }
  if (context.script.failed()) return context.fail(context.script.failure());
  if (end == SequenceEnd::LinkFailed) {
    return context.fail(std::string(chosen->caption) + " stopped: the arm or the dilutor failed");
  }
  context.out << chosen->caption << ": done\n";
  return 0;
}

}  // namespace zorvel::headless
