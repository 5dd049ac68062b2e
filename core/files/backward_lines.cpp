#include "core/files/backward_lines.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

#include "core/files/file_ends.h"

namespace zorvel {

BackwardLines::BackwardLines(const std::string& path, std::size_t firstByte)
    : file_(::open(path.c_str(), O_RDONLY | O_CLOEXEC)), firstByte_(firstByte) {
  struct stat info {};
  if (!file_.valid() || ::fstat(file_.get(), &info) != 0) {
    exhausted_ = true;
    return;
  }
  const auto size = static_cast<std::size_t>(info.st_size);
  bufferStart_ = std::max(size, firstByte_);
  exhausted_ = size <= firstByte_;
  if (exhausted_ || !readBlockBefore()) return;
  // The file's last line ending closes its last line; no empty line follows it.
  if (buffer_.back() == '\n') {
    buffer_.pop_back();
    if (buffer_.empty() && bufferStart_ > firstByte_ && !readBlockBefore()) return;
  }
  if (!buffer_.empty() && buffer_.back() == '\r') buffer_.pop_back();
}

bool BackwardLines::readBlockBefore() {
  const std::size_t start = bufferStart_ - std::min(bufferStart_ - firstByte_, kFileEndBytes);
  std::string block(bufferStart_ - start, '\0');
  std::size_t got = 0;
  while (got < block.size()) {
    const ssize_t n = ::pread(file_.get(), block.data() + got, block.size() - got,
                              static_cast<off_t>(start + got));
    if (n <= 0) {
      exhausted_ = true;
      return false;
    }
    got += static_cast<std::size_t>(n);
  }
  buffer_.insert(0, block);
  bufferStart_ = start;
  return true;
}

bool BackwardLines::previous(std::string& line) {
  while (!exhausted_) {
    const std::size_t ending = buffer_.find_last_of("\r\n");
    // An ending at the very front may be the LF of a CR LF whose CR lies in the block before.
    if ((ending == std::string::npos || ending == 0) && bufferStart_ > firstByte_) {
      if (!readBlockBefore()) return false;
      continue;
    }
    if (ending == std::string::npos) {  // the first line of all
      line = std::move(buffer_);
      buffer_.clear();
      exhausted_ = true;
      return true;
    }
    line = buffer_.substr(ending + 1);
    const bool crlf = buffer_[ending] == '\n' && ending > 0 && buffer_[ending - 1] == '\r';
    buffer_.resize(crlf ? ending - 1 : ending);
    return true;
  }
  return false;
}

}  // namespace zorvel
