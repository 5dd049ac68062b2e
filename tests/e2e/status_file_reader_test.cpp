#include <gtest/gtest.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QByteArray>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <string>

#include "core/run/run_status_file.h"
#include "support/bytes.h"

namespace zorvel {
namespace {

// Reads the file as fast as it can until the writer closes `done`: every read must be a whole
// JSON object. Exit status 0 when each one was, 1 at the first that was not.
[[noreturn]] void readUntilDone(const std::string& path, int done) {
  pollfd writerGone{done, POLLIN, 0};
  do {
    QFile file(QString::fromStdString(path));
    if (!file.open(QIODevice::ReadOnly)) _exit(1);
    QJsonParseError error;
    const QJsonDocument json = QJsonDocument::fromJson(file.readAll(), &error);
    if (error.error != QJsonParseError::NoError || !json.object().contains("lastMessage")) {
      _exit(1);
    }
  } while (::poll(&writerGone, 1, 0) == 0);
  _exit(0);
}

// Another process following the status file never catches it part written, even while it is
// replaced over and over with texts of very different lengths.
TEST(StatusFileReader, AnotherProcessOnlyEverReadsWholeFiles) {
  const std::string path = testing::makeTempDir("status") + "RUN.status.json";
  RunStatus status;
  const RunStatusContext context{"1.0.0", true, "M.MTH", "RUN.FIX"};
  ASSERT_TRUE(WriteRunStatus(path, RunStatusJson(status, context)));
  int pipeEnds[2];
  ASSERT_EQ(0, ::pipe(pipeEnds));
  const pid_t reader = ::fork();
  ASSERT_GE(reader, 0);
  if (reader == 0) {
    ::close(pipeEnds[1]);
    readUntilDone(path, pipeEnds[0]);
  }
  ::close(pipeEnds[0]);
  for (int i = 0; i < 200; ++i) {
    status.sampleNumber = i;
    status.lastMessage = std::string(i % 2 == 0 ? 3 : 70000, 'x');
    ASSERT_TRUE(WriteRunStatus(path, RunStatusJson(status, context)));
  }
  ::close(pipeEnds[1]);
  int exitStatus = -1;
  ASSERT_EQ(reader, ::waitpid(reader, &exitStatus, 0));
  EXPECT_TRUE(WIFEXITED(exitStatus) && WEXITSTATUS(exitStatus) == 0) << exitStatus;
}

}  // namespace
}  // namespace zorvel
