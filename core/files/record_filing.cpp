#include "core/files/record_filing.h"

#include "core/files/record_append.h"

namespace zorvel {

bool FileRecord(Operator& op, const std::string& path, std::string_view record,
                std::string_view lineEnding) {
  for (;;) {
    std::string reason;
    if (AppendRecordDurably(path, record, lineEnding, &reason)) return true;
    const int answer =
        op.message("The reading could not be written to " + path + ": " + reason +
                       ".\r\rRetry writes it again; Cancel leaves the reading unrecorded.",
                   "ZORVEL ERROR", BoxIcon::Exclamation, BoxButtons::RetryCancel);
    if (answer != answer::kRetry) return false;
  }
}

}  // namespace zorvel
