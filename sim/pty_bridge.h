#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/platform/clock.h"
#include "sim/simulated_line.h"

namespace zorvel::sim {

// Serves one simulated instrument on a pseudo-terminal, so that the program (or any terminal
// program) talks to it through a real serial device such as /dev/pts/7. What the program writes
// reaches the instrument with the moment it would have fully arrived at 9600 baud; what the
// instrument transmits is written to the terminal at its moments: a reply goes out in pieces
// of up to 16 characters, each when its last character would have arrived, so that the time
// the whole reply takes is true to the line speed while a busy machine never splits a short
// reply into parts that a reader could take for two.
//
// Times given to the instrument are simulation seconds; the PtyServer that drives the bridge
// maps them to the real clock. The bridge keeps the terminal's own end open, so the program
// may close and reopen the port as often as it likes.
class PtyBridge final : public LineEnd {
 public:
  explicit PtyBridge(LinePeer& peer);
  ~PtyBridge() override;
  PtyBridge(const PtyBridge&) = delete;
  PtyBridge& operator=(const PtyBridge&) = delete;

  // Creates the pseudo-terminal in raw mode; false (with a reason) when the system refuses.
  bool open(std::string* error = nullptr);
  // The device the program opens, such as "/dev/pts/7"; empty before open().
  const std::string& devicePath() const { return devicePath_; }
  bool isOpen() const { return master_ >= 0; }
  // The instrument vanishes: both ends close, and the program's port sees a dead device.
  void closeDevice();

  void transmit(std::string_view bytes, double startS) override;

  // For the server: the descriptor to watch, whether output is blocked on a full terminal
  // queue, when the next character is due, and the two halves of the work.
  int descriptor() const { return master_; }
  bool outputBlocked() const { return outputBlocked_; }
  std::optional<double> nextDueS() const;
  void takeInput(double nowS);
  void sendDue(double nowS);
  // Everything the program wrote, in order (for tests and the trace of a demo).
  std::size_t bytesReceived() const { return bytesReceived_; }

 private:
  LinePeer& peer_;
  int master_ = -1;
  int slave_ = -1;
  std::string devicePath_;
  struct Outgoing {
    double dueS;
    char byte;
    bool endsPiece;
  };
  std::deque<Outgoing> outgoing_;
  double sendBusyUntilS_ = 0.0;
  double receiveBusyUntilS_ = 0.0;
  bool outputBlocked_ = false;
  std::size_t bytesReceived_ = 0;
};

// Drives a set of bridges on the real clock from one thread, so that instruments sharing one
// bench never run at the same time. It sleeps in poll() until a byte comes from the program,
// the next character is due (a timer, to the microsecond), or it is told to stop. A speed factor
// above 1 makes the instruments' time run faster than the real clock: every delay is divided by it.
class PtyServer {
 public:
  explicit PtyServer(Clock& realClock, double speed = 1.0);
  ~PtyServer();
  PtyServer(const PtyServer&) = delete;
  PtyServer& operator=(const PtyServer&) = delete;

  void add(PtyBridge& bridge) { bridges_.push_back(&bridge); }
  // Also watches `fd`: when it becomes readable, onReadable runs in the serving thread (so it
  // may change the bench) and returns whether to go on watching.
  void watch(int fd, std::function<bool()> onReadable) {
    watches_.push_back({fd, std::move(onReadable)});
  }
  // Serves until requestStop() is called or extraStopFd becomes readable (a signal descriptor,
  // say); -1 for none.
  void run(int extraStopFd = -1);
  // Safe from any thread and from a signal handler.
  void requestStop();
  // Simulation seconds since the server was made.
  double nowS();

 private:
  // Sets the timer for the next character due and returns poll()'s timeout: 0 when one is due
  // now, -1 when the timer (or nothing) is to wake the server, milliseconds without a timer.
  int armForNextDue();

  Clock& clock_;
  double speed_;
  double startS_;
  std::vector<PtyBridge*> bridges_;
  struct Watch {
    int fd;
    std::function<bool()> onReadable;
  };
  std::vector<Watch> watches_;
  int stopPipe_[2] = {-1, -1};
  int timer_ = -1;  // wakes the server when the next character is due
};

}  // namespace zorvel::sim
