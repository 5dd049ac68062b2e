#include "ui/platform/serial_open_failure.h"

#include <grp.h>
#include <pwd.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>

namespace zorvel::ui {

namespace {

struct LockOwner {
  std::string lockPath;
  long pid = 0;
  std::string program;
  std::string user;
};

std::string firstLine(const std::string& path) {
  std::ifstream in(path);
  std::string line;
  std::getline(in, line);
  return line;
}

std::string userName(uid_t uid) {
  const passwd* entry = getpwuid(uid);
  return entry != nullptr ? entry->pw_name : std::to_string(uid);
}

// The lock file's name is the device's below /dev, slashes made underscores: LCK..ttyUSB0,
// LCK..pts_3.
std::string lockName(const std::string& device) {
  std::string name = device.rfind("/dev/", 0) == 0 ? device.substr(5) : device;
  for (char& c : name) {
    if (c == '/') c = '_';
  }
  return "LCK.." + name;
}

// The live process named in the device's lock file; nothing when there is none or it is stale.
std::optional<LockOwner> lockOwner(const std::string& device,
                                   const std::vector<std::string>& lockFolders) {
  for (const std::string& folder : lockFolders) {
    LockOwner owner;
    owner.lockPath = folder + "/" + lockName(device);
    struct stat info {};
    if (stat(owner.lockPath.c_str(), &info) != 0) continue;
    try {
      owner.pid = std::stol(firstLine(owner.lockPath));
    } catch (...) {
      owner.pid = 0;
    }
    if (owner.pid > 0 && kill(static_cast<pid_t>(owner.pid), 0) != 0 && errno == ESRCH) continue;
    if (owner.pid > 0) owner.program = firstLine("/proc/" + std::to_string(owner.pid) + "/comm");
    owner.user = userName(info.st_uid);
    return owner;
  }
  return std::nullopt;
}

std::string missing(const std::string& device, const std::vector<SerialDevice>& present) {
  std::string text = "There is no device " + device + ".";
  if (present.empty())
    return text + " This computer shows no serial devices: is the adapter plugged in?";
  text += " The serial devices on this computer are:";
  for (const SerialDevice& d : present) text += "\n" + DescribeSerialDevice(d);
  return text + "\nPut the right one in ZORVEL.PORTS beside the preferences.";
}

std::string busy(const std::string& device, const LockOwner& owner) {
  std::string who = owner.program.empty() ? "another program" : owner.program;
  if (owner.pid > 0) who += " (process " + std::to_string(owner.pid) + ", user " + owner.user + ")";
  return device + " is in use by " + who + ", says its lock file " + owner.lockPath +
         ". Close that program, or choose another port.";
}

std::string denied(const std::string& device) {
  struct stat info {};
  std::string groupName = "dialout";
  if (stat(device.c_str(), &info) == 0) {
    const struct group* entry = getgrgid(info.st_gid);
    if (entry != nullptr) groupName = entry->gr_name;
  }
  const std::string user = userName(getuid());
  return "You may not use " + device + ": it belongs to the group " + groupName +
         ", and you are not in it. Add yourself to the group (sudo adduser " + user + " " +
         groupName + "), then log out and in again.";
}

// The process and user in the words of a message: "picocom (process 4711, user ann)".
std::string processWords(long pid) {
  const std::string program = firstLine("/proc/" + std::to_string(pid) + "/comm");
  struct stat info {};
  const std::string user = ::stat(("/proc/" + std::to_string(pid)).c_str(), &info) == 0
                               ? ", user " + userName(info.st_uid)
                               : std::string();
  return (program.empty() ? "another program" : program) + " (process " + std::to_string(pid) +
         user + ")";
}

}  // namespace

std::string DeviceLockHolder(const std::string& device) {
  struct stat info {};
  if (::stat(device.c_str(), &info) != 0) return {};
  // /proc/locks names each lock's file as major:minor (hex) of its file system and its inode:
  // "1: FLOCK  ADVISORY  WRITE 4711 00:19:7 0 EOF".
  char file[64];
  std::snprintf(file, sizeof file, "%02x:%02x:%lu", major(info.st_dev), minor(info.st_dev),
                static_cast<unsigned long>(info.st_ino));
  std::ifstream locks("/proc/locks");
  std::string line;
  while (std::getline(locks, line)) {
    std::istringstream fields(line);
    std::string id, kind, mode, access, where;
    long pid = 0;
    if (!(fields >> id >> kind >> mode >> access >> pid >> where)) continue;
    if (kind == "FLOCK" && where == file && pid != getpid()) return processWords(pid);
  }
  return {};
}

std::string ExplainLockedSerialDevice(const std::string& device, const std::string& holder) {
  return device + " is in use by " + (holder.empty() ? "another program" : holder) +
         ", which holds its lock on the device. Close that program, or choose another port.";
}

const std::vector<std::string>& SerialLockFolders() {
  static const std::vector<std::string> folders = {
      "/var/lock", "/etc/locks", "/var/spool/locks",  "/var/spool/uucp",
      "/tmp",      "/var/tmp",   "/var/lock/lockdev", "/run/lock"};
  return folders;
}

std::string ExplainSerialOpenFailure(const std::string& device, const OpenRefusal& refusal,
                                     const std::vector<SerialDevice>& present,
                                     const std::vector<std::string>& lockFolders) {
  std::error_code ec;
  if (!std::filesystem::exists(device, ec)) return missing(device, present);
  const std::string real = std::filesystem::canonical(device, ec).string();
  if (const auto owner = lockOwner(ec ? device : real, lockFolders)) return busy(device, *owner);
  if (access(device.c_str(), R_OK | W_OK) != 0 && errno == EACCES) return denied(device);
  if (const std::string holder = DeviceLockHolder(device); !holder.empty())
    return ExplainLockedSerialDevice(device, holder);
  if (refusal.deniedOrBusy)
    return device +
           " is in use by another program, which holds it for itself. Close that "
           "program, or choose another port.";
  return device + " cannot be opened: " + refusal.systemReason + ".";
}

}  // namespace zorvel::ui
