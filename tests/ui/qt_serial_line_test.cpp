#include "ui/platform/qt_serial_line.h"

#include <fcntl.h>
#include <grp.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <pwd.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QSysInfo>
#include <QThread>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <thread>

#include "core/platform/real_clock.h"
#include "sim/pty_bridge.h"
#include "sim/scripted_peer.h"
#include "ui/platform/serial_open_failure.h"

namespace zorvel::ui {
namespace {

// Processor time of the whole process, to show that a wait sleeps instead of spinning.
double processorS() {
  return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

void ensureApplication() {
  if (QCoreApplication::instance() != nullptr) return;
  static int argc = 1;
  static char name[] = "test_ui";
  static char* argv[] = {name, nullptr};
  new QCoreApplication(argc, argv);  // lives as long as the test program
}

// A scripted instrument on a pseudo-terminal, served from its own thread on the real clock.
struct PtyInstrument {
  RealClock clock;
  sim::ScriptedPeer peer;
  sim::PtyBridge bridge{peer};
  sim::PtyServer server{clock};
  std::thread serving;

  void start() {
    ensureApplication();
    ASSERT_TRUE(bridge.open());
    server.add(bridge);
    serving = std::thread([this] { server.run(); });
  }
  void stop() {
    if (!serving.joinable()) return;
    server.requestStop();
    serving.join();
  }
  ~PtyInstrument() { stop(); }
};

TEST(QtSerialLine, CarriesBytesBothWaysAtLineSpeed) {
  PtyInstrument instrument;
  instrument.peer.on("$RE 0\r", "0000\r\n");
  const std::string record =
      "\x7f"
      "350.0,450.0," +
      std::string(80, '7') + "\r\n0000\r\n";
  instrument.peer.on("$RD 1.0\r", record, 0.05);
  instrument.start();
  QtSerialLine line(instrument.clock, "COM1", instrument.bridge.devicePath());
  EXPECT_EQ(line.describe(), "COM1 (" + instrument.bridge.devicePath() + ")");
  ASSERT_TRUE(line.open("9600,N,8,1"));
  EXPECT_EQ(line.charactersWaiting(), 0u);

  ASSERT_TRUE(line.write("$RE 0\r"));
  ASSERT_TRUE(line.waitForCharacters(6, instrument.clock.monotonicS() + 2));
  EXPECT_EQ(line.read(6), "0000\r\n");

  const double sentS = instrument.clock.monotonicS();
  ASSERT_TRUE(line.write("$RD 1.0\r"));
  ASSERT_TRUE(line.waitForCharacters(record.size(), sentS + 2));
  // 8 characters out, 50 ms, 101 characters back: about 0.16 s at 960 characters a second.
  const double tookS = instrument.clock.monotonicS() - sentS;
  EXPECT_GT(tookS, 0.14);
  EXPECT_LT(tookS, 0.50);
  EXPECT_EQ(line.read(1), "\x7f");
  EXPECT_EQ(line.read(11), "350.0,450.0");
  line.discardInput();
  EXPECT_EQ(line.charactersWaiting(), 0u);
  EXPECT_EQ(instrument.peer.sent, "$RE 0\r$RD 1.0\r");
  EXPECT_TRUE(instrument.peer.done());
}

TEST(QtSerialLine, SleepsUntilTheDeadlineWhenNothingComes) {
  PtyInstrument instrument;
  instrument.peer.on("$SC 1\r", "00", 0.0);  // a status cut short
  instrument.start();
  QtSerialLine line(instrument.clock, "COM1", instrument.bridge.devicePath());
  ASSERT_TRUE(line.open("9600,N,8,1"));
  ASSERT_TRUE(line.write("$SC 1\r"));
  const double startS = instrument.clock.monotonicS();
  const double startCpuS = processorS();
  EXPECT_FALSE(line.waitForCharacters(6, startS + 0.3));
  const double waitedS = instrument.clock.monotonicS() - startS;
  EXPECT_GE(waitedS, 0.3);
  EXPECT_LT(waitedS, 0.60);
  EXPECT_LT(processorS() - startCpuS, 0.05);
  EXPECT_EQ(line.charactersWaiting(), 2u);
  EXPECT_FALSE(line.waitForCharacters(6, startS));  // a deadline already passed
  EXPECT_TRUE(line.isOpen());
  EXPECT_FALSE(line.lost());
}

TEST(QtSerialLine, ClosesForGoodWhenTheDeviceVanishes) {
  PtyInstrument instrument;
  instrument.start();
  QtSerialLine line(instrument.clock, "COM2", instrument.bridge.devicePath());
  ASSERT_TRUE(line.open("9600,N,8,1"));
  instrument.stop();
  instrument.bridge.closeDevice();

  const double startS = instrument.clock.monotonicS();
  const double startCpuS = processorS();
  EXPECT_FALSE(line.waitForCharacters(1, startS + 2));
  EXPECT_LT(instrument.clock.monotonicS() - startS, 0.5);
  EXPECT_TRUE(line.lost());
  EXPECT_FALSE(line.isOpen());
  // From then on every call answers at once and nothing reopens the dead port.
  EXPECT_FALSE(line.write("$RE 0\r"));
  EXPECT_EQ(line.charactersWaiting(), 0u);
  EXPECT_EQ(line.read(4), "");
  EXPECT_FALSE(line.waitForCharacters(1, startS + 2));
  EXPECT_FALSE(line.open("9600,N,8,1"));
  EXPECT_LT(processorS() - startCpuS, 0.1);
  EXPECT_LT(instrument.clock.monotonicS() - startS, 0.5);
}

// Qt's complaints (a notifier used from the wrong thread, say) while a test runs.
std::vector<std::string>* capturedWarnings = nullptr;
void captureWarning(QtMsgType, const QMessageLogContext&, const QString& text) {
  if (capturedWarnings != nullptr) capturedWarnings->push_back(text.toStdString());
}

TEST(QtSerialLine, BelongsToWhicheverThreadOpensIt) {
  PtyInstrument instrument;
  instrument.peer.on("$RE 0\r", "0000\r\n");
  instrument.peer.on("$PH 0\r", "0000\r\n");
  instrument.start();
  std::vector<std::string> warnings;
  capturedWarnings = &warnings;
  const QtMessageHandler previous = qInstallMessageHandler(captureWarning);
  QtSerialLine line(instrument.clock, "COM1", instrument.bridge.devicePath());
  std::string workerReply;
  // The instrument worker: a thread without an event loop of its own.
  QThread* worker = QThread::create([&] {
    if (!line.open("9600,N,8,1") || !line.write("$RE 0\r")) return;
    if (line.waitForCharacters(6, instrument.clock.monotonicS() + 2)) workerReply = line.read(6);
    line.close();
  });
  worker->start();
  worker->wait();
  delete worker;
  EXPECT_EQ(workerReply, "0000\r\n");
  // Opened again from this thread, the line makes a port of its own here.
  ASSERT_TRUE(line.open("9600,N,8,1"));
  ASSERT_TRUE(line.write("$PH 0\r"));
  ASSERT_TRUE(line.waitForCharacters(6, instrument.clock.monotonicS() + 2));
  EXPECT_EQ(line.read(6), "0000\r\n");
  line.close();
  qInstallMessageHandler(previous);
  capturedWarnings = nullptr;
  EXPECT_TRUE(warnings.empty()) << warnings.front();
}

TEST(QtSerialLine, RefusesAMissingDeviceOrBadSettingsWithoutCallingItLost) {
  ensureApplication();
  RealClock clock;
  QtSerialLine missing(clock, "COM4", "/dev/zorvel-no-such-port");
  EXPECT_FALSE(missing.open("9600,N,8,1"));
  EXPECT_EQ(missing.openFailure().rfind("There is no device /dev/zorvel-no-such-port.", 0), 0u)
      << missing.openFailure();
  EXPECT_FALSE(missing.lost());
  EXPECT_FALSE(missing.write("x"));
  EXPECT_FALSE(missing.waitForCharacters(1, clock.monotonicS() + 5));

  PtyInstrument instrument;
  instrument.start();
  QtSerialLine line(clock, "COM1", instrument.bridge.devicePath());
  EXPECT_FALSE(line.open("9600,Q,8,1"));
  EXPECT_FALSE(line.isOpen());
  EXPECT_TRUE(line.open("9600,N,8,1"));
}

TEST(QtSerialLine, TwoLinesNeverShareAPortAndTheSecondIsToldWhoHoldsIt) {
  PtyInstrument instrument;
  instrument.start();
  const std::string device = instrument.bridge.devicePath();
  RealClock clock;
  QtSerialLine first(clock, "COM1", device);
  QtSerialLine second(clock, "COM2", device);
  ASSERT_TRUE(first.open("9600,N,8,1"));
  EXPECT_FALSE(second.open("9600,N,8,1"));
  EXPECT_NE(second.openFailure().find(device + " is in use by test_ui (process " +
                                      std::to_string(getpid())),
            std::string::npos)
      << second.openFailure();
  // The terminal is in exclusive mode too: other users' programs are refused by the system.
  const int other = ::open(device.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK);
  if (other < 0) {
    EXPECT_EQ(errno, EBUSY);
  } else {
    int exclusive = 0;
    EXPECT_EQ(::ioctl(other, TIOCGEXCL, &exclusive), 0);
    EXPECT_EQ(exclusive, 1);
    ::close(other);
  }
  first.close();
  EXPECT_TRUE(second.open("9600,N,8,1"));
}

// A terminal program's hold on a device: it opens it, asks for exclusive use and locks it, but
// writes no lock file. The child holds on until the returned descriptor is closed.
pid_t forkHolder(const std::string& device, int& release) {
  int ready[2];
  int hold[2];
  if (::pipe(ready) != 0 || ::pipe(hold) != 0) return -1;
  const pid_t child = ::fork();
  if (child == 0) {
    ::close(ready[0]);
    ::close(hold[1]);
    const int fd = ::open(device.c_str(), O_RDWR | O_NOCTTY);
    const bool held = fd >= 0 && ::ioctl(fd, TIOCEXCL) == 0 && ::flock(fd, LOCK_EX | LOCK_NB) == 0;
    [[maybe_unused]] const ssize_t n = ::write(ready[1], held ? "y" : "n", 1);
    char c = 0;
    [[maybe_unused]] const ssize_t m = ::read(hold[0], &c, 1);  // until the parent lets go
    _exit(0);
  }
  ::close(ready[1]);
  ::close(hold[0]);
  release = hold[1];
  char said = 'n';
  pollfd answer{ready[0], POLLIN, 0};
  if (::poll(&answer, 1, 10000) <= 0 || ::read(ready[0], &said, 1) != 1 || said != 'y') {
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    ::close(ready[0]);
    return -1;
  }
  ::close(ready[0]);
  return child;
}

TEST(QtSerialLine, APortATerminalProgramHoldsIsRefusedEvenToRootWithTheHolderNamed) {
  ensureApplication();
  PtyInstrument instrument;
  ASSERT_TRUE(instrument.bridge.open());
  const std::string device = instrument.bridge.devicePath();
  int release = -1;
  const pid_t holder = forkHolder(device, release);
  ASSERT_GT(holder, 0);
  RealClock clock;
  QtSerialLine line(clock, "COM1", device);
  EXPECT_FALSE(line.open("9600,N,8,1"));
  EXPECT_NE(line.openFailure().find(device + " is in use by test_ui (process " +
                                    std::to_string(holder) + ", user "),
            std::string::npos)
      << line.openFailure();
  ::close(release);
  ::waitpid(holder, nullptr, 0);
  EXPECT_TRUE(line.open("9600,N,8,1")) << line.openFailure();
}

TEST(QtSerialLine, TheLockFileOfAKilledRunIsReclaimed) {
  ensureApplication();
  PtyInstrument instrument;
  ASSERT_TRUE(instrument.bridge.open());
  const std::string device = instrument.bridge.devicePath();
  RealClock clock;
  QtSerialLine line(clock, "COM1", device);
  // Where this system keeps the device's lock file: the open writes it there.
  ASSERT_TRUE(line.open("9600,N,8,1"));
  std::string lockPath;
  for (const std::string& folder : SerialLockFolders()) {
    const std::string path = folder + "/LCK..pts_" + device.substr(device.rfind('/') + 1);
    if (lockPath.empty() && std::filesystem::exists(path)) lockPath = path;
  }
  ASSERT_FALSE(lockPath.empty());
  line.close();
  ASSERT_FALSE(std::filesystem::exists(lockPath));
  // A run killed while it held the port left its lock file, naming a process that is gone.
  const pid_t gone = ::fork();
  if (gone == 0) _exit(0);
  ::waitpid(gone, nullptr, 0);
  {
    std::ofstream stale(lockPath);
    stale << gone << "\nzorvel\n" << QSysInfo::machineHostName().toStdString() << "\n";
  }
  EXPECT_TRUE(line.open("9600,N,8,1")) << line.openFailure();
  std::ifstream now(lockPath);
  long owner = 0;
  now >> owner;
  EXPECT_EQ(owner, ::getpid());
  line.close();
}

// The open of a device the user may not use, and what the line says of it. Run as an ordinary
// user in a child process when the tests run as root, who may open anything.
std::string refusedOpen(const std::string& device) {
  RealClock clock;
  if (geteuid() != 0) {
    ::chmod(device.c_str(), 0);
    QtSerialLine line(clock, "COM1", device);
    EXPECT_FALSE(line.open("9600,N,8,1"));
    return line.openFailure();
  }
  const group* dialout = getgrnam("dialout");
  if (dialout != nullptr && ::chown(device.c_str(), 0, dialout->gr_gid) != 0) return "no chown";
  ::chmod(device.c_str(), 0660);
  const auto threads = std::distance(std::filesystem::directory_iterator("/proc/self/task"),
                                     std::filesystem::directory_iterator());
  if (threads != 1) return "forked beside " + std::to_string(threads - 1) + " other thread(s)";
  int pipeFds[2];
  if (::pipe(pipeFds) != 0) return "no pipe";
  const pid_t child = ::fork();
  if (child == 0) {
    ::close(pipeFds[0]);
    if (::setgroups(0, nullptr) != 0 || ::setgid(65534) != 0 || ::setuid(65534) != 0) _exit(1);
    QtSerialLine line(clock, "COM1", device);
    const std::string said = line.open("9600,N,8,1") ? "opened" : line.openFailure();
    [[maybe_unused]] const ssize_t n = ::write(pipeFds[1], said.data(), said.size());
    _exit(0);
  }
  ::close(pipeFds[1]);
  std::string said;
  char bytes[512];
  // A child that never answers is ended rather than waited for without end.
  pollfd answer{pipeFds[0], POLLIN, 0};
  while (::poll(&answer, 1, 30000) > 0) {
    const ssize_t n = ::read(pipeFds[0], bytes, sizeof bytes);
    if (n <= 0) break;
    said.append(bytes, static_cast<std::size_t>(n));
  }
  ::close(pipeFds[0]);
  ::kill(child, SIGKILL);
  ::waitpid(child, nullptr, 0);
  return said;
}

TEST(QtSerialLine, APortTheUserMayNotUseIsExplainedWithTheGroupToJoin) {
  // The refused open happens in a forked child, so the fork comes while this process has no
  // other thread: a child forked beside running threads can wait for ever on a lock one of
  // them held. Nothing needs to answer on the device, so it is opened but not served.
  PtyInstrument instrument;
  ASSERT_TRUE(instrument.bridge.open());
  const std::string device = instrument.bridge.devicePath();
  const std::string said = refusedOpen(device);
  struct stat info {};
  ASSERT_EQ(::stat(device.c_str(), &info), 0);
  const group* owner = getgrgid(info.st_gid);
  ASSERT_NE(owner, nullptr);
  EXPECT_NE(said.find("You may not use " + device + ": it belongs to the group " + owner->gr_name),
            std::string::npos)
      << said;
  EXPECT_NE(said.find(std::string("(sudo adduser ") +
                      getpwuid(geteuid() == 0 ? 65534 : getuid())->pw_name + " " + owner->gr_name +
                      "), then log out and in again."),
            std::string::npos)
      << said;
}

}  // namespace
}  // namespace zorvel::ui
