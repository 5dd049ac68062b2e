#include "sim/pty_bridge.h"

#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <ctime>
#include <thread>

#include "core/platform/real_clock.h"

namespace zorvel::sim {
namespace {

double processorS() {
  return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

// Answers every chunk with "ok" after a delay and notes when each chunk arrived.
class EchoPeer final : public LinePeer {
 public:
  explicit EchoPeer(double delayS) : delayS_(delayS) {}
  void onReceive(std::string_view bytes, double arrivedS, LineEnd& reply) override {
    received += bytes;
    arrivals.push_back(arrivedS);
    reply.transmit("ok:" + std::string(bytes), arrivedS + delayS_);
  }
  std::string received;
  std::vector<double> arrivals;

 private:
  double delayS_;
};

// The program's side of the terminal, opened raw as a serial port would be.
int openDevice(const std::string& path) {
  const int fd = ::open(path.c_str(), O_RDWR | O_NOCTTY);
  termios raw{};
  ::tcgetattr(fd, &raw);
  ::cfmakeraw(&raw);
  ::tcsetattr(fd, TCSANOW, &raw);
  return fd;
}

std::string readFor(int fd, std::size_t count, double limitS) {
  std::string got;
  RealClock clock;
  const double end = clock.monotonicS() + limitS;
  while (got.size() < count && clock.monotonicS() < end) {
    pollfd p{fd, POLLIN, 0};
    if (::poll(&p, 1, 20) <= 0) continue;
    char buf[64];
    const ssize_t n = ::read(fd, buf, sizeof buf);
    if (n > 0) got.append(buf, static_cast<std::size_t>(n));
  }
  return got;
}

struct Served {
  RealClock clock;
  EchoPeer peer;
  PtyBridge bridge{peer};
  PtyServer server;
  std::thread thread;
  Served(double delayS, double speed) : peer(delayS), server(clock, speed) {
    EXPECT_TRUE(bridge.open());
    server.add(bridge);
    thread = std::thread([this] { server.run(); });
  }
  void stop() {
    if (!thread.joinable()) return;
    server.requestStop();
    thread.join();
  }
  ~Served() { stop(); }
};

TEST(PtyBridge, RepliesAtTheModelsMomentsScaledBySpeed) {
  Served served(0.8, 4.0);  // 0.8 s of instrument time is 0.2 s of real time
  ASSERT_EQ(served.bridge.devicePath().rfind("/dev/pts/", 0), 0u);
  const int fd = openDevice(served.bridge.devicePath());
  ASSERT_GE(fd, 0);
  const double sentS = served.clock.monotonicS();
  const double sentSimS = served.server.nowS();
  ASSERT_EQ(::write(fd, "ping\r", 5), 5);
  EXPECT_EQ(readFor(fd, 8, 2.0), "ok:ping\r");
  const double tookS = served.clock.monotonicS() - sentS;
  // (5 characters + 0.8 s + 8 characters) / 4, the characters at 960 a second; 0.81 s unscaled.
  EXPECT_GT(tookS, 0.20);
  EXPECT_LT(tookS, 0.60);
  ::close(fd);
  // The model hears the command when its last character would have arrived.
  ASSERT_EQ(served.peer.arrivals.size(), 1u);
  EXPECT_GE(served.peer.arrivals[0], sentSimS + 5 * SimulatedLine::kCharacterTimeS);
  EXPECT_LT(served.peer.arrivals[0], sentSimS + 0.4);
}

TEST(PtyBridge, OutlivesTheProgramClosingItsPortWithoutSpinning) {
  Served served(0.0, 1.0);
  int fd = openDevice(served.bridge.devicePath());
  ASSERT_EQ(::write(fd, "a", 1), 1);
  EXPECT_EQ(readFor(fd, 4, 1.0), "ok:a");
  ::close(fd);

  const double cpuS = processorS();
  std::this_thread::sleep_for(std::chrono::milliseconds(150));
  EXPECT_LT(processorS() - cpuS, 0.03);

  fd = openDevice(served.bridge.devicePath());
  ASSERT_GE(fd, 0);
  ::tcflush(fd, TCIFLUSH);
  ASSERT_EQ(::write(fd, "b", 1), 1);
  EXPECT_EQ(readFor(fd, 4, 1.0), "ok:b");
  ::close(fd);
  EXPECT_EQ(served.peer.received, "ab");
}

}  // namespace
}  // namespace zorvel::sim
