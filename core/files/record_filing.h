#pragma once

#include <string>
#include <string_view>

#include "core/platform/operator.h"

namespace zorvel {

// Puts one record of a reading on the disk. When the disk refuses it (full, read-only, an I/O
// error) the operator is told the file and the reason and chooses Retry (write it again) or
// Cancel (the reading is not recorded). True once the record is on the disk.
bool FileRecord(Operator& op, const std::string& path, std::string_view record,
                std::string_view lineEnding);

}  // namespace zorvel
