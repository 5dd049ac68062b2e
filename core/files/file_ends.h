#pragma once

#include <cstddef>
#include <string>

// A long data file is read only where it matters: its header at the front and its last records
// at the end. Reopening a set of a million records then costs a few blocks, not the whole file.
namespace zorvel {

// The bytes a reader reads at a time from either end of a file.
inline constexpr std::size_t kFileEndBytes = 64 * 1024;

struct FileEnds {
  std::string head;           // the first bytes; the whole file when it is short
  std::string tail;           // the last bytes; the whole file when it is short
  std::size_t size = 0;       // the file's size
  std::size_t tailStart = 0;  // where `tail` begins in the file
  bool whole() const { return tailStart == 0; }
};

// Reads up to `endBytes` from the front and from the back of the file (the whole file once when
// it holds no more than twice that). False when it cannot be opened or read.
bool ReadFileEnds(const std::string& path, std::size_t endBytes, FileEnds& ends);

// Reads at most `length` bytes from the front of the file. False when it cannot be opened.
bool ReadFileHead(const std::string& path, std::size_t length, std::string& bytes);

}  // namespace zorvel
