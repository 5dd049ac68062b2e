#include <iostream>

#include "apps/zorvel-run/commands.h"
#include "core/checks/intensity_presenter.h"
#include "core/checks/unattended_answers.h"
#include "core/checks/watercell_presenter.h"
#include "core/text/number_format.h"

namespace zorvel::headless {

namespace {

// The water-cell window of an unattended check: every line it would show is printed.
class ConsoleWaterCellView final : public WaterCellView {
 public:
  explicit ConsoleWaterCellView(std::ostream& out) : out_(out) {}
  void printLine(CheckArea, int, const std::string& text, bool) override { out_ << text << "\n"; }
  void clearArea(CheckArea) override {}
  void showButtons(const WaterCellButtons&) override {}
  void setProgressVisible(bool) override {}
  void setProgress(int) override {}
  void close() override {}

 private:
  std::ostream& out_;
};

// The intensity window of an unattended reading: its progress goes to the error stream, so
// that the reading alone is what the run prints.
class ConsoleIntensityView final : public IntensityView {
 public:
  void showBoxText(IntensityBox, const std::string&) override {}
  void showFilter(int) override {}
  void showVoltageOption(int) override {}
  void setVoltageBoxVisible(bool) override {}
  void selectBoxText(IntensityBox) override {}
  void printStatus(int, const std::string& text, bool) override { std::cerr << text << "\n"; }
  void clearStatus() override {}
  void close() override {}
};

constexpr int kOutsideRangeExit = 3;
constexpr int kUsageExit = 2;

std::unique_ptr<SerialLine> FluorimeterLine(Context& context, LineSource& lines) {
  return lines.lineFor(InstrumentKind::Fluorimeter, context.state.Prefs.FlComPort);
}

// The stopping reasons every check shares: the program was halted, or the answer file failed.
std::optional<int> Interrupted(Context& context) {
  if (context.op.ended()) return context.op.exitCode();
  if (context.script.failed()) return context.fail(context.script.failure());
  return std::nullopt;
}

}  // namespace

int RunWatercellCommand(Context& context, LineSource& lines) {
  auto line = FluorimeterLine(context, lines);
  if (!line) return context.fail("the fluorimeter's port cannot be reached");
  // The session's last result; this run is the whole session.
  WaterCellResult last;
  ConsoleWaterCellView view(context.out);
  WaterCellPresenter presenter(context.state, context.op, context.clock, *line, last, view);
  presenter.opened();
  presenter.start();
  for (;;) {
    if (const auto stop = Interrupted(context)) return *stop;
    const WaterCellStage stage = presenter.stage();
    const bool rerunOffered = WaterCellPresenter::ButtonsFor(stage).rerun;
    const WaterCellAnswer answer = NextWaterCellAnswer(context.script, rerunOffered);
    if (answer == WaterCellAnswer::Misfit) return context.fail(context.script.failure());
    if (answer == WaterCellAnswer::Rerun) {
      presenter.rerun();
      continue;
    }
    presenter.ok();
    if (stage == WaterCellStage::Within) return 0;
    if (stage == WaterCellStage::Outside) return kOutsideRangeExit;
    return context.fail("the water-cell check did not finish");
  }
}

int RunIntensityCommand(Context& context, LineSource& lines) {
  const Options& o = context.options;
  if (o.filter && !IsFilterPosition(*o.filter)) {
    return context.fail("--filter must be one of 1, 2, 3, 4, 5, 7, 8", kUsageExit);
  }
  auto line = FluorimeterLine(context, lines);
  if (!line) return context.fail("the fluorimeter's port cannot be reached");
  ConsoleIntensityView view;
  IntensityPresenter presenter(context.state, context.op, context.clock, *line, view);
  presenter.opened();
  const std::pair<const std::optional<double>&, IntensityBox> boxes[] = {
      {o.exWl, IntensityBox::ExWl},
      {o.emWl, IntensityBox::EmWl},
      {o.exSl, IntensityBox::ExSl},
      {o.emSl, IntensityBox::EmSl},
      {o.readTimeS, IntensityBox::RdTime}};
  for (const auto& [value, box] : boxes) {
    if (value) presenter.boxChanged(box, text::plain(*value));
  }
  if (o.filter) presenter.filterClicked(*o.filter);
  if (o.pmt == "default") {
    presenter.voltageClicked(kVoltageDefault, "");
  } else if (!o.pmt.empty()) {
    if (!text::parseNumber(o.pmt)) {
      return context.fail("--pmt needs a voltage or \"default\"", kUsageExit);
    }
    presenter.voltageClicked(kVoltageSelected, o.pmt);
  }
  if (const auto refusal = RefuseReading(presenter.settings(),
                                         FluorimeterModelFor(context.state.Prefs.Fluorimeter))) {
    return context.fail(refusal->message, kUsageExit);
  }
  const std::optional<double> reading = presenter.readSample();
  if (const auto stop = Interrupted(context)) return *stop;
  if (!reading) return context.fail("no reading was taken");
  context.out << text::fixed(*reading, 3) << "\n";
  return 0;
}

}  // namespace zorvel::headless
