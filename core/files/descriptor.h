#pragma once

#include <string>
#include <string_view>

// The low-level pieces every file writer of the program shares: a descriptor closed however a
// function leaves, a write that survives short writes and interrupts, and the folder sync that
// makes a newly created file's name as durable as its bytes.
namespace zorvel::files {

class Descriptor {
 public:
  explicit Descriptor(int fd) : fd_(fd) {}
  ~Descriptor();
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  int get() const { return fd_; }
  bool valid() const { return fd_ >= 0; }
  // Closes now and tells whether the close itself succeeded.
  bool close();

 private:
  int fd_;
};

// Writes every byte, retrying after a short write or an interrupt. False on an error.
bool WriteAll(int fd, std::string_view bytes);

// Forces the folder holding the path to the disk, so a file created or renamed there keeps its
// name after a power cut.
bool SyncFolderOf(const std::string& path);

}  // namespace zorvel::files
