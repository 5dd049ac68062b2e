#include "core/files/log_line.h"

#include "core/files/file_output.h"
#include "core/files/paths.h"
#include "core/text/date_format.h"

namespace zorvel {

bool WriteLogEntry(const std::string& logPath, Clock& clock, const std::string& text) {
  const CalendarTime now = clock.now();
  return AppendRecord(logPath,
                      text + '\t' + text::formatDate(now) + '\t' + text::formatTime(now) + "\r\n");
}

bool EnsureLogFile(const std::string& logPath, const std::string& title) {
  if (FileExists(logPath)) return true;
  return AppendRecord(logPath, title + "\r\n");
}

}  // namespace zorvel
