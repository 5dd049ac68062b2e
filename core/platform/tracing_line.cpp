#include "core/platform/tracing_line.h"

#include <cstdio>
#include <filesystem>
#include <system_error>

#include "core/text/clock_time_format.h"
#include "core/text/number_format.h"

namespace zorvel {

namespace {

// Received text longer than this is written out even without a line feed.
constexpr std::size_t kLongestReceivedChunk = 80;
// Characters read further apart than this belong to different replies.
constexpr double kReceivedGapS = 0.02;
// Waits at least this long that end without the characters are written to the trace.
constexpr double kNotedTimeOutS = 1.0;

const char* controlName(unsigned char c) {
  switch (c) {
    case '\r':
      return "<CR>";
    case '\n':
      return "<LF>";
    case 2:
      return "<STX>";
    case 3:
      return "<ETX>";
    case 127:
      return "<DEL>";
    default:
      return nullptr;
  }
}

}  // namespace

std::string VisibleTraceBytes(std::string_view bytes) {
  static constexpr char kHex[] = "0123456789ABCDEF";
  std::string out;
  for (unsigned char c : bytes) {
    if (const char* name = controlName(c)) {
      out += name;
    } else if (c >= 32 && c < 127) {
      out += static_cast<char>(c);
    } else {
      out += "<x";
      out += kHex[c >> 4];
      out += kHex[c & 15];
      out += '>';
    }
  }
  return out;
}

TraceFile::TraceFile(std::string path, std::size_t limitBytes)
    : path_(std::move(path)), limitBytes_(limitBytes) {}

bool TraceFile::appendLine(std::string_view text) {
  std::FILE* f = std::fopen(path_.c_str(), "ab");
  if (f == nullptr) {
    // The trace folder is made on first use, so --trace may name one that does not exist yet.
    std::error_code ignored;
    std::filesystem::create_directories(std::filesystem::path(path_).parent_path(), ignored);
    f = std::fopen(path_.c_str(), "ab");
  }
  if (f == nullptr) return false;
  const long size = std::ftell(f);
  if (size > 0 && static_cast<std::size_t>(size) + text.size() + 1 > limitBytes_) {
    std::fclose(f);
    const std::string rolled = path_ + ".1";
    std::rename(path_.c_str(), rolled.c_str());
    f = std::fopen(path_.c_str(), "wb");
    if (f == nullptr) return false;
  }
  const bool ok =
      std::fwrite(text.data(), 1, text.size(), f) == text.size() && std::fputc('\n', f) != EOF;
  return std::fclose(f) == 0 && ok;
}

TracingLine::TracingLine(std::unique_ptr<SerialLine> inner, Clock& clock, std::string tracePath,
                         std::size_t limitBytes)
    : inner_(std::move(inner)), clock_(clock), file_(std::move(tracePath), limitBytes) {}

TracingLine::~TracingLine() {
  flushReceived();
}

void TracingLine::note(std::string_view marker, std::string_view text) {
  std::string line = text::formatTimeMs(clock_.secondsSinceMidnight());
  line += ' ';
  line += marker;
  line += ' ';
  line += text;
  file_.appendLine(line);
}

void TracingLine::noteReceived(std::string_view bytes) {
  if (bytes.empty()) return;
  const double nowS = clock_.monotonicS();
  if (!received_.empty() && nowS - lastReceivedS_ > kReceivedGapS) flushReceived();
  lastReceivedS_ = nowS;
  if (received_.empty()) receivedStamp_ = text::formatTimeMs(clock_.secondsSinceMidnight());
  received_ += bytes;
  if (received_.back() == '\n' || received_.size() >= kLongestReceivedChunk) flushReceived();
}

void TracingLine::flushReceived() {
  if (received_.empty()) return;
  file_.appendLine(receivedStamp_ + " < " + VisibleTraceBytes(received_));
  received_.clear();
}

void TracingLine::noteIfLost() {
  if (lossNoted_ || !inner_->lost()) return;
  lossNoted_ = true;
  flushReceived();
  note("!!", "lost " + inner_->describe());
}

bool TracingLine::open(std::string_view settings) {
  flushReceived();
  const bool ok = inner_->open(settings);
  note("--", (ok ? "opened " : "cannot open ") + inner_->describe() + " " + std::string(settings));
  noteIfLost();
  return ok;
}

void TracingLine::close() {
  flushReceived();
  const bool wasOpen = inner_->isOpen();
  inner_->close();
  if (wasOpen) note("--", "closed " + inner_->describe());
}

bool TracingLine::write(std::string_view bytes) {
  flushReceived();
  const bool ok = inner_->write(bytes);
  note(ok ? ">" : "> refused:", VisibleTraceBytes(bytes));
  noteIfLost();
  return ok;
}

std::size_t TracingLine::charactersWaiting() {
  const std::size_t count = inner_->charactersWaiting();
  noteIfLost();
  return count;
}

std::string TracingLine::read(std::size_t n) {
  std::string bytes = inner_->read(n);
  noteReceived(bytes);
  noteIfLost();
  return bytes;
}

void TracingLine::discardInput() {
  flushReceived();
  const std::string dropped = inner_->read(inner_->charactersWaiting());
  inner_->discardInput();
  if (!dropped.empty()) note("< discarded:", VisibleTraceBytes(dropped));
  noteIfLost();
}

bool TracingLine::waitForCharacters(std::size_t n, double deadlineS) {
  const double startS = clock_.monotonicS();
  const bool arrived = inner_->waitForCharacters(n, deadlineS);
  noteIfLost();
  // Short waits are how readers tell that a reply has ended; only real time-outs are news.
  if (!arrived && inner_->isOpen() && deadlineS - startS >= kNotedTimeOutS) {
    flushReceived();
    note("..", "time-out with " + text::plain(static_cast<double>(inner_->charactersWaiting())) +
                   " of " + text::plain(static_cast<double>(n)) + " characters waiting");
  }
  return arrived;
}

void TracingLine::setInputBufferSize(std::size_t size) {
  inner_->setInputBufferSize(size);
  note("--", "input buffer " + text::plain(static_cast<double>(size)));
}

}  // namespace zorvel
