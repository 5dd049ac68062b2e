// The autosampler window's priming, run headless by zorvel-run against zorvel-sim's arm and
// dilutor on pseudo-terminals.
#include <gtest/gtest.h>

#include <QProcess>

#include "core/method/demo_methods.h"
#include "core/method/method_defaults.h"
#include "core/method/method_file.h"
#include "e2e/run_helpers.h"

#if defined(ZORVEL_SIM_EXECUTABLE) && defined(ZORVEL_RUN_EXECUTABLE)

namespace zorvel {
namespace {

std::string TrayWorkspace() {
  const std::string dir = e2e::makeWorkspace("e2e-prime");
  Preferences prefs;
  prefs.FlComPort = 1;
  prefs.DilComPort = 2;
  prefs.AutoSampComPort = 3;
  prefs.AutoSampler = true;
  prefs.BaseDirectoryPath = dir;
  prefs.TrayGeometryFile = dir + "METHODS/tray96.tgf";
  EXPECT_TRUE(WritePreferencesFile(dir + "ZORVEL.PRF", prefs));
  testing::writeFile(prefs.TrayGeometryFile, DemoTrayGeometryText());
  MethodSettings method;
  method.Fixed = true;
  method.NoColors = 1;
  method.DeliveryMethod = Delivery::Autosampler;
  SetAutosamplerDefaults(method.Autosampler, 96);
  method.Autosampler.AirDryTime = 0;  // no drying wait in real time
  method.Autosampler.TrayDescriptorFile = prefs.TrayGeometryFile;
  EXPECT_TRUE(WriteMethodFile(method, dir + "METHODS/TRAY.MTH"));
  return dir;
}

TEST(AutosamplerMaintenance, PrimingThroughZorvelSimOverPseudoTerminals) {
  e2e::ensureApplication();
  const std::string dir = TrayWorkspace();
  QProcess sim;
  sim.start(ZORVEL_SIM_EXECUTABLE, {"--dir", QString::fromStdString(dir), "--speed", "50"});
  ASSERT_TRUE(sim.waitForStarted(5000));
  int listed = 0;
  while (listed < 3 && sim.waitForReadyRead(5000)) {
    while (sim.canReadLine()) listed += sim.readLine().isEmpty() ? 0 : 1;
  }
  ASSERT_EQ(3, listed) << sim.readAllStandardError().toStdString();

  QProcess run;
  run.start(ZORVEL_RUN_EXECUTABLE,
            {"--start-dir", QString::fromStdString(dir), "--method",
             QString::fromStdString(dir + "METHODS/TRAY.MTH"), "--autosampler", "prime", "--trace",
             QString::fromStdString(dir)});
  ASSERT_TRUE(run.waitForFinished(30000));
  const std::string out = run.readAllStandardOutput().toStdString();
  const std::string err = run.readAllStandardError().toStdString();
  sim.terminate();
  sim.waitForFinished(3000);
  ASSERT_EQ(0, run.exitCode()) << out << err;
  EXPECT_NE(out.find("Arm reset\n"), std::string::npos) << out;
  EXPECT_NE(out.find("Prime Pump: done\n"), std::string::npos) << out;
  // A fresh program takes the arm to stand at the rinse station (tube 0): the probe is lowered
  // there at once, then the arm is reset and lowered again. No move is sent before the reset.
  const std::string arm = testing::readFile(dir + "arm.trace");
  const auto at = [&](const std::string& what, std::size_t from) { return arm.find(what, from); };
  const std::size_t down = at("SET DOWN=70<CR>", 0);
  ASSERT_NE(down, std::string::npos) << arm;
  EXPECT_EQ(at("SETM ABSPOS=", 0), std::string::npos) << arm;
  const std::size_t reset = at("RESET<CR>", down);
  ASSERT_NE(reset, std::string::npos) << arm;
  EXPECT_NE(at("SET DOWN=70<CR>", reset), std::string::npos) << arm;
}

}  // namespace
}  // namespace zorvel

#endif
