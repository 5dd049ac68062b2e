#include "ui/windows/run_view_relay.h"

#include <QMetaObject>
#include <QThread>

namespace zorvel::ui {

void RunViewRelay::deliver(std::function<void(RunView&)> call) {
  QObject* window = window_.data();
  if (window == nullptr) return;
  if (QThread::currentThread() == window->thread()) {
    call(target_);
    return;
  }
  // Queued with the window as context: Qt drops the call if the window is deleted first.
  RunView* target = &target_;
  QMetaObject::invokeMethod(
      window, [target, call = std::move(call)] { call(*target); }, Qt::QueuedConnection);
}

void RunViewRelay::layOut(const RunLayout& layout) {
  deliver([=](RunView& v) { v.layOut(layout); });
}
void RunViewRelay::showScreen(const RunScreen& screen) {
  deliver([=](RunView& v) { v.showScreen(screen); });
}
void RunViewRelay::clearStatus() {
  deliver([](RunView& v) { v.clearStatus(); });
}
void RunViewRelay::showStatus(const std::string& line) {
  deliver([=](RunView& v) { v.showStatus(line); });
}
void RunViewRelay::setCell(int row, int column, const std::string& text) {
  deliver([=](RunView& v) { v.setCell(row, column, text); });
}
void RunViewRelay::setCellColour(int row, int column, int paletteIndex) {
  deliver([=](RunView& v) { v.setCellColour(row, column, paletteIndex); });
}
void RunViewRelay::setMedianRow(const std::vector<std::string>& medians) {
  deliver([=](RunView& v) { v.setMedianRow(medians); });
}
void RunViewRelay::showRow(int row) {
  deliver([=](RunView& v) { v.showRow(row); });
}
void RunViewRelay::clearSpectra() {
  deliver([](RunView& v) { v.clearSpectra(); });
}
void RunViewRelay::setSpectraScale(double lowerNm, double upperNm, double yMin, double yMax) {
  deliver([=](RunView& v) { v.setSpectraScale(lowerNm, upperNm, yMin, yMax); });
}
void RunViewRelay::plotPoint(double wavelengthNm, double value, int paletteIndex) {
  deliver([=](RunView& v) { v.plotPoint(wavelengthNm, value, paletteIndex); });
}
void RunViewRelay::setProgress(int percent) {
  deliver([=](RunView& v) { v.setProgress(percent); });
}
void RunViewRelay::clearComment() {
  deliver([](RunView& v) { v.clearComment(); });
}
void RunViewRelay::closeWindow() {
  deliver([](RunView& v) { v.closeWindow(); });
}

}  // namespace zorvel::ui
