#include "core/run/run_display.h"

#include "core/run/run_prompts.h"
#include "core/text/number_format.h"

namespace zorvel {

void RunDisplay::layOut(const MethodSettings& method, const std::vector<std::string>& medians,
                        const DataSetPaths& set) {
  RunLayout layout{method.Fixed, method.Synch, {}};
  for (int i = 1; i <= method.NoColors && i <= kMaxColours; ++i) {
    const ColourDeclaration& pair = method.FixedPairs.colour(i);
    layout.heads.push_back(text::plainSingle(pair.ExWl) + "/" + text::plainSingle(pair.EmWl));
  }
  view_.layOut(layout);
  view_.setMedianRow(medians);
  gridRow_ = 1;
  status(prompt::kInitialise);
  // The set's files as they are named on disk.
  const auto fileName = [](const std::string& path) {
    return path.substr(path.find_last_of('/') + 1);
  };
  std::string& caption = screen_.filenameCaption;
  if (method.Fixed) caption = fileName(set.FixPath);
  if (method.Synch) caption += (caption.empty() ? "" : "/") + fileName(set.SynPath);
  offerButton(prompt::kInitCaption);
}

void RunDisplay::show() {
  view_.showScreen(screen_);
  screen_.focus.reset();
}

void RunDisplay::setResetEnabled(bool enabled) {
  screen_.resetEnabled = enabled;
  show();
}

void RunDisplay::hideButtons() {
  screen_.resetEnabled = false;
  screen_.okVisible = false;
  show();
}

void RunDisplay::offerButton(const std::string& caption) {
  screen_.okCaption = caption;
  screen_.okVisible = true;
  screen_.focus = RunButton::InitRead;
  show();
}

void RunDisplay::legend(const std::string& text) {
  screen_.keyLegend = text;
  show();
}

void RunDisplay::status(const std::string& title) {
  view_.clearStatus();
  view_.showStatus(title);
}

int RunDisplay::nextRow(int sampleNumber) {
  ++gridRow_;
  view_.showRow(gridRow_);
  view_.setCell(gridRow_, 0, text::fixed(static_cast<double>(sampleNumber), 0));
  view_.clearStatus();
  return gridRow_;
}

void RunDisplay::labelRow(const std::string& label) {
  view_.setCell(gridRow_, 0, label);
}

}  // namespace zorvel
