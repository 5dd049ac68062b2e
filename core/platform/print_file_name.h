#pragma once

#include <string>

namespace zorvel {

// Printouts sent to a file: each document gets a file of its own, so a later run's printout
// never replaces an earlier one. The n-th name of FILE.pdf is FILE.pdf for n = 1, then
// FILE-2.pdf, FILE-3.pdf, ...
std::string NumberedPrintFile(const std::string& path, int n);

// The first name of that sequence, from n on, that no file holds yet; n is left past it.
std::string NextFreePrintFile(const std::string& path, int& n);

}  // namespace zorvel
