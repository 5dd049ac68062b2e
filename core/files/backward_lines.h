#pragma once

#include <cstddef>
#include <string>

#include "core/files/descriptor.h"

namespace zorvel {

// A file's lines from the last to the first, read backwards a block at a time, so that finding
// the last records of a long file costs about those records. Lines end with CR LF, CR or LF, as
// when the file is read forwards; a last line without a line ending is a line too.
class BackwardLines {
 public:
  // The lines that begin at or after byte `firstByte` of the file.
  BackwardLines(const std::string& path, std::size_t firstByte);
  // The next line towards the front, without its line ending; false once none is left or the
  // file cannot be read.
  bool previous(std::string& line);

 private:
  bool readBlockBefore();

  files::Descriptor file_;
  std::size_t firstByte_;
  std::size_t bufferStart_ = 0;  // where `buffer_` begins in the file
  std::string buffer_;           // the bytes not yet given out, up to the end of the next line
  bool exhausted_ = false;       // every line has been given out (or the file cannot be read)
};

}  // namespace zorvel
