#include "sim/pty_bridge.h"

#include <errno.h>
#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <sys/timerfd.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace zorvel::sim {

namespace {

// The most characters written to the terminal at once.
constexpr std::size_t kPieceSize = 16;

void closeFd(int& fd) {
  if (fd >= 0) ::close(fd);
  fd = -1;
}

bool fail(std::string* error, const char* what) {
  if (error != nullptr) *error = std::string(what) + ": " + std::strerror(errno);
  return false;
}

}  // namespace

PtyBridge::PtyBridge(LinePeer& peer) : peer_(peer) {}

PtyBridge::~PtyBridge() {
  closeDevice();
}

bool PtyBridge::open(std::string* error) {
  closeDevice();
  master_ = ::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
  if (master_ < 0) return fail(error, "posix_openpt");
  char name[128];
  if (::grantpt(master_) != 0 || ::unlockpt(master_) != 0 ||
      ::ptsname_r(master_, name, sizeof name) != 0) {
    const bool result = fail(error, "pseudo-terminal set-up");
    closeDevice();
    return result;
  }
  // Holding the terminal's own end open keeps the master from reporting a hang-up (and poll()
  // from waking at once) whenever the program has the port closed.
  slave_ = ::open(name, O_RDWR | O_NOCTTY | O_CLOEXEC);
  termios raw{};
  if (slave_ < 0 || ::tcgetattr(slave_, &raw) != 0) {
    const bool result = fail(error, name);
    closeDevice();
    return result;
  }
  ::cfmakeraw(&raw);
  ::cfsetspeed(&raw, B9600);
  ::tcsetattr(slave_, TCSANOW, &raw);
  ::fcntl(master_, F_SETFL, ::fcntl(master_, F_GETFL) | O_NONBLOCK);
  devicePath_ = name;
  return true;
}

void PtyBridge::closeDevice() {
  closeFd(master_);
  closeFd(slave_);
  outgoing_.clear();
  outputBlocked_ = false;
}

void PtyBridge::transmit(std::string_view bytes, double startS) {
  double t = std::max(startS, receiveBusyUntilS_);
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    t += SimulatedLine::kCharacterTimeS;
    const bool endsPiece = i + 1 == bytes.size() || i % kPieceSize == kPieceSize - 1;
    outgoing_.push_back(Outgoing{t, bytes[i], endsPiece});
  }
  receiveBusyUntilS_ = t;
}

std::optional<double> PtyBridge::nextDueS() const {
  if (master_ < 0) return std::nullopt;
  for (const Outgoing& o : outgoing_) {
    if (o.endsPiece) return o.dueS;
  }
  return std::nullopt;
}

void PtyBridge::takeInput(double nowS) {
  char buffer[512];
  while (master_ >= 0) {
    const ssize_t n = ::read(master_, buffer, sizeof buffer);
    if (n > 0) {
      const std::string_view bytes(buffer, static_cast<std::size_t>(n));
      bytesReceived_ += bytes.size();
      const double start = std::max(nowS, sendBusyUntilS_);
      sendBusyUntilS_ = start + static_cast<double>(n) * SimulatedLine::kCharacterTimeS;
      peer_.onReceive(bytes, sendBusyUntilS_, *this);
      continue;
    }
    if (n < 0 && (errno == EAGAIN || errno == EINTR)) return;
    // The terminal is gone from under us; stop serving it rather than wake on it forever.
    closeDevice();
  }
}

void PtyBridge::sendDue(double nowS) {
  std::string due;
  std::size_t count = 0;
  for (const Outgoing& o : outgoing_) {
    if (o.dueS > nowS) break;
    ++count;
    if (o.endsPiece) {
      while (due.size() < count) due.push_back(outgoing_[due.size()].byte);
    }
  }
  if (due.empty() || master_ < 0) return;
  const ssize_t n = ::write(master_, due.data(), due.size());
  if (n < 0 && errno != EAGAIN && errno != EINTR) {
    closeDevice();
    return;
  }
  const std::size_t written = n > 0 ? static_cast<std::size_t>(n) : 0;
  outgoing_.erase(outgoing_.begin(), outgoing_.begin() + static_cast<std::ptrdiff_t>(written));
  // A full terminal queue (nobody reading) holds the rest back until there is room again.
  outputBlocked_ = written < due.size();
}

PtyServer::PtyServer(Clock& realClock, double speed)
    : clock_(realClock), speed_(speed > 0 ? speed : 1.0), startS_(realClock.monotonicS()) {
  if (::pipe2(stopPipe_, O_CLOEXEC | O_NONBLOCK) != 0) stopPipe_[0] = stopPipe_[1] = -1;
  timer_ = ::timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC | TFD_NONBLOCK);
}

PtyServer::~PtyServer() {
  closeFd(stopPipe_[0]);
  closeFd(stopPipe_[1]);
  closeFd(timer_);
}

double PtyServer::nowS() {
  return (clock_.monotonicS() - startS_) * speed_;
}

void PtyServer::requestStop() {
  const char byte = 1;
  if (stopPipe_[1] >= 0) [[maybe_unused]]
    const ssize_t n = ::write(stopPipe_[1], &byte, 1);
}

int PtyServer::armForNextDue() {
  std::optional<double> next;
  for (PtyBridge* b : bridges_) {
    const auto due = b->nextDueS();
    if (due && !b->outputBlocked()) next = next ? std::min(*next, *due) : *due;
  }
  itimerspec expiry{};
  if (!next) {
    if (timer_ >= 0) ::timerfd_settime(timer_, 0, &expiry, nullptr);
    return -1;
  }
  const double waitS = (*next - nowS()) / speed_;
  if (waitS <= 0) return 0;
  // poll() may sleep a thousandth of its timeout longer than asked (seconds into a long move)
  // and counts whole milliseconds; a timer is kept to the microsecond, so a character goes out
  // when the line would have carried it, not a few milliseconds after.
  if (timer_ >= 0) {
    const auto ns = static_cast<long long>(waitS * 1e9);
    expiry.it_value.tv_sec = static_cast<time_t>(ns / 1000000000);
    expiry.it_value.tv_nsec = static_cast<long>(std::max(1LL, ns % 1000000000));
    if (::timerfd_settime(timer_, 0, &expiry, nullptr) == 0) return -1;
  }
  return static_cast<int>(std::ceil(waitS * 1000.0));
}

void PtyServer::run(int extraStopFd) {
  std::vector<pollfd> fds;
  for (;;) {
    fds.assign({pollfd{stopPipe_[0], POLLIN, 0}, pollfd{extraStopFd, POLLIN, 0},
                pollfd{timer_, POLLIN, 0}});
    for (const Watch& w : watches_) fds.push_back(pollfd{w.fd, POLLIN, 0});
    for (PtyBridge* b : bridges_) {
      const short events = static_cast<short>(POLLIN | (b->outputBlocked() ? POLLOUT : 0));
      fds.push_back(pollfd{b->descriptor(), events, 0});
    }
    const int ready = ::poll(fds.data(), fds.size(), armForNextDue());
    if (ready < 0 && errno != EINTR) return;
    if ((fds[0].revents | fds[1].revents) != 0) return;
    const std::size_t first = 3 + watches_.size();
    const double now = nowS();
    for (std::size_t i = 0; i < bridges_.size(); ++i) {
      if (fds[first + i].revents & (POLLIN | POLLHUP | POLLERR)) bridges_[i]->takeInput(now);
      bridges_[i]->sendDue(now);
    }
    // After the bridges, so that a change of the bench never comes between a command that
    // had arrived and its reply.
    for (std::size_t i = watches_.size(); i-- > 0;) {
      if (fds[3 + i].revents != 0 && !watches_[i].onReadable())
        watches_.erase(watches_.begin() + static_cast<std::ptrdiff_t>(i));
    }
  }
}

}  // namespace zorvel::sim
