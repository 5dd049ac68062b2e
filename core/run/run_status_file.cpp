#include "core/run/run_status_file.h"

#include <cstdio>

#include "core/datafiles/data_set_naming.h"
#include "core/files/file_output.h"
#include "core/text/date_format.h"

namespace zorvel {

namespace {

// A JSON string of single-byte text: quotes, backslashes and control bytes escaped, bytes from
// 128 on written as their UTF-8 pairs.
std::string quoted(const std::string& text) {
  std::string out = "\"";
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '"' || c == '\\') {
      out += '\\';
      out += c;
    } else if (byte < 0x20) {
      char escape[8];
      std::snprintf(escape, sizeof escape, "\\u%04x", byte);
      out += escape;
    } else if (byte >= 0x80) {
      out += static_cast<char>(0xC0 | (byte >> 6));
      out += static_cast<char>(0x80 | (byte & 0x3F));
    } else {
      out += c;
    }
  }
  return out + "\"";
}

std::string clockTime(long seconds) {
  return seconds < 0 ? "null" : quoted(text::formatHms(seconds % 86400));
}

}  // namespace

std::string RunStatusJson(const RunStatus& s, const RunStatusContext& c) {
  const std::string started =
      s.startS < 0 ? "null"
                   : quoted(text::formatDate(s.startedAt) + " " + text::formatTime(s.startedAt));
  std::string json = "{\n";
  const auto field = [&json](const char* name, const std::string& value, bool last = false) {
    json += std::string("  \"") + name + "\": " + value + (last ? "\n" : ",\n");
  };
  field("version", quoted(c.version));
  field("simulated", c.simulated ? "true" : "false");
  field("method", quoted(c.method));
  field("dataSet", quoted(c.dataSet));
  field("state", quoted(RunStatusStateName(s.state)));
  field("ended", s.end == RunEnd::None ? "null" : quoted(RunEndName(s.end)));
  field("tubeOfRange", std::to_string(s.tubeOfRange));
  field("tubesInRange", std::to_string(s.tubesInRange));
  field("tube", std::to_string(s.tube));
  field("sampleType", quoted(s.sampleType));
  field("sampleNumber", std::to_string(s.sampleNumber));
  field("completed", std::to_string(s.completed));
  field("planned", std::to_string(s.planned));
  field("started", started);
  field("estimatedEnd", clockTime(s.estimatedEndS));
  field("alerts", std::to_string(s.alerts));
  field("lastAlert", quoted(s.lastAlert));
  field("lastMessage", quoted(s.lastMessage), true);
  return json + "}\n";
}

std::string RunStatusPath(const DataSetPaths& paths) {
  const std::string& named = paths.FixPath.empty() ? paths.SynPath : paths.FixPath;
  return named.empty() ? std::string() : BasePathOf(named) + ".status.json";
}

bool WriteRunStatus(const std::string& path, const std::string& json) {
  return !path.empty() && WriteWholeFile(path, json);
}

void KeepRunStatusFile(RunStatusBoard& board, const RunStatusContext& context,
                       const std::string& path, std::function<void(const RunStatus&)> told) {
  WriteRunStatus(path, RunStatusJson(board.snapshot(), context));
  board.setListener([context, path, told = std::move(told)](const RunStatus& now) {
    if (told) told(now);
    WriteRunStatus(path, RunStatusJson(now, context));
  });
}

}  // namespace zorvel
