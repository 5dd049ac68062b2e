#pragma once

#include <string>

#include "core/platform/clock.h"

namespace zorvel {

// Appends one line to the program log: text TAB 03-07-2000 TAB 14:05:09 CR LF, creating the
// log when it is missing. Returns false when the log cannot be written.
bool WriteLogEntry(const std::string& logPath, Clock& clock, const std::string& text);

// Creates the program log with its title line when it is missing. False when it cannot be
// created.
bool EnsureLogFile(const std::string& logPath, const std::string& title);

}  // namespace zorvel
