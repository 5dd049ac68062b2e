#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include "core/platform/clock.h"
#include "core/platform/serial_line.h"

namespace zorvel {

// Shows a port's bytes readably: printable text as is, control bytes as <CR>, <LF>, <STX>,
// <ETX>, <DEL> or <xNN>.
std::string VisibleTraceBytes(std::string_view bytes);

// A trace file that stays bounded: when the next line would take it past the limit, the file
// becomes NAME.1 (replacing an older one) and a fresh file starts. Each line is appended by
// opening, writing and closing, so two ports of one instrument can share the file.
class TraceFile {
 public:
  static constexpr std::size_t kDefaultLimitBytes = 1024 * 1024;

  explicit TraceFile(std::string path, std::size_t limitBytes = kDefaultLimitBytes);
  // Appends text and a line feed; false when the file cannot be written.
  bool appendLine(std::string_view text);
  const std::string& path() const { return path_; }

 private:
  std::string path_;
  std::size_t limitBytes_;
};

// Wraps a port and records every byte it sends and receives, time-stamped to the millisecond
// with the time of day: "14:05:09.123 > $RE 0<CR>" for a command, "14:05:09.140 < 0000<CR><LF>"
// for what the program read, plus the port's opening, closing, time-outs and loss. Received
// bytes are gathered until a line feed, a pause of 20 ms between reads, a write or a time-out,
// so a reply read character by character still shows as one line.
class TracingLine final : public SerialLine {
 public:
  TracingLine(std::unique_ptr<SerialLine> inner, Clock& clock, std::string tracePath,
              std::size_t limitBytes = TraceFile::kDefaultLimitBytes);
  ~TracingLine() override;

  bool open(std::string_view settings) override;
  void close() override;
  bool isOpen() const override { return inner_->isOpen(); }
  bool write(std::string_view bytes) override;
  std::size_t charactersWaiting() override;
  std::string read(std::size_t n) override;
  void discardInput() override;
  bool waitForCharacters(std::size_t n, double deadlineS) override;
  void setInputBufferSize(std::size_t size) override;
  bool lost() const override { return inner_->lost(); }
  std::string describe() const override { return inner_->describe(); }
  std::string openFailure() const override { return inner_->openFailure(); }

 private:
  void note(std::string_view marker, std::string_view text);
  void noteReceived(std::string_view bytes);
  void flushReceived();
  void noteIfLost();

  std::unique_ptr<SerialLine> inner_;
  Clock& clock_;
  TraceFile file_;
  std::string received_;
  std::string receivedStamp_;
  double lastReceivedS_ = 0.0;
  bool lossNoted_ = false;
};

}  // namespace zorvel
