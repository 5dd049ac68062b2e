#include "core/platform/tracing_line.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "core/platform/virtual_clock.h"
#include "sim/scripted_peer.h"
#include "support/bytes.h"

namespace zorvel {
namespace {

TEST(TraceBytes, ShowsControlBytesByName) {
  EXPECT_EQ(VisibleTraceBytes(std::string("\x7f"
                                          "350.0,\r\n\x02"
                                          "1ZR\x03\x01\xff",
                                          16)),
            "<DEL>350.0,<CR><LF><STX>1ZR<ETX><x01><xFF>");
  EXPECT_EQ(VisibleTraceBytes(std::string_view("a\0b", 3)), "a<x00>b");
}

struct TracedPort {
  VirtualClock clock;  // 14:05:09 on its first day
  sim::ScriptedPeer peer;
  std::string dir = testing::makeTempDir("trace");
  sim::SimulatedLine* simulated = nullptr;
  std::unique_ptr<TracingLine> line;

  explicit TracedPort(std::size_t limit = TraceFile::kDefaultLimitBytes) {
    auto inner = std::make_unique<sim::SimulatedLine>(clock, peer, "COM1 (sim)");
    simulated = inner.get();
    line = std::make_unique<TracingLine>(std::move(inner), clock, dir + "fluorimeter.trace", limit);
  }
  std::string trace() const { return testing::readFile(dir + "fluorimeter.trace"); }
};

TEST(TracingLine, RecordsACommandAndItsReplyReadCharacterByCharacter) {
  TracedPort port;
  port.peer.on("$RE 0\r", "0000\r\n", 0.1);
  port.peer.on("$RD 1.0\r", std::string("junk\x7f") + "350.0,450.0,12345\r\n0000\r\n", 0.2);
  ASSERT_TRUE(port.line->open("9600,N,8,1"));
  port.line->write("$RE 0\r");
  ASSERT_TRUE(port.line->waitForCharacters(6, port.clock.monotonicS() + 10));
  std::string status;
  while (port.line->charactersWaiting() > 0) status += port.line->read(1);
  EXPECT_EQ(status, "0000\r\n");
  port.line->write("$RD 1.0\r");
  // Bytes the program never read as a record still show, marked as thrown away.
  port.clock.advanceBy(1.0);
  port.line->discardInput();
  EXPECT_FALSE(port.line->waitForCharacters(1, port.clock.monotonicS() + 0.5));  // not noted
  EXPECT_FALSE(port.line->waitForCharacters(1, port.clock.monotonicS() + 10.0));
  port.line->close();
  EXPECT_SAME_BYTES(
      "14:05:09.000 -- opened COM1 (sim) 9600,N,8,1\n"
      "14:05:09.000 > $RE 0<CR>\n"
      "14:05:09.112 < 0000<CR><LF>\n"
      "14:05:09.112 > $RD 1.0<CR>\n"
      "14:05:10.112 < discarded: junk<DEL>350.0,450.0,12345<CR><LF>0000<CR><LF>\n"
      "14:05:20.612 .. time-out with 0 of 1 characters waiting\n"
      "14:05:20.612 -- closed COM1 (sim)\n",
      port.trace());
}

TEST(TracingLine, CharactersReadAsTheyArriveMakeOneLinePerReply) {
  TracedPort port;
  port.peer.on("MOVE\r", "OK\r", 0.5);
  port.peer.on("MOVE\r", "BUSY\r", 0.0);
  ASSERT_TRUE(port.line->open("9600,N,8,1"));
  for (int reply = 0; reply < 2; ++reply) {
    port.line->write("MOVE\r");
    ASSERT_TRUE(port.line->waitForCharacters(1, port.clock.monotonicS() + 1.0));
    std::string got = port.line->read(1);
    while (port.line->waitForCharacters(1, port.clock.monotonicS() + 0.05))
      got += port.line->read(1);
    EXPECT_EQ(got, reply == 0 ? "OK\r" : "BUSY\r");
    port.clock.advanceBy(0.1);  // the reader's own pause before the next command
  }
  port.line.reset();  // what was read last is written when the line goes
  EXPECT_SAME_BYTES(
      "14:05:09.000 -- opened COM1 (sim) 9600,N,8,1\n"
      "14:05:09.000 > MOVE<CR>\n"
      "14:05:09.506 < OK<CR>\n"
      "14:05:09.658 > MOVE<CR>\n"
      "14:05:09.664 < BUSY<CR>\n",
      port.trace());
}

TEST(TracingLine, NotesALostPortOnceAndTheRefusedWrite) {
  TracedPort port;
  port.peer.on("$RE 0\r", "00", 0.0);
  ASSERT_TRUE(port.line->open("9600,N,8,1"));
  port.line->write("$RE 0\r");
  port.clock.advanceBy(0.1);
  port.line->read(1);  // a partial reply, flushed when the port is lost
  port.simulated->vanish();
  EXPECT_FALSE(port.line->waitForCharacters(6, port.clock.monotonicS() + 10));
  EXPECT_FALSE(port.line->write("$RE 0\r"));
  EXPECT_EQ(port.line->charactersWaiting(), 0u);
  EXPECT_TRUE(port.line->lost());
  EXPECT_SAME_BYTES(
      "14:05:09.000 -- opened COM1 (sim) 9600,N,8,1\n"
      "14:05:09.000 > $RE 0<CR>\n"
      "14:05:09.100 < 0\n"
      "14:05:09.100 !! lost COM1 (sim)\n"
      "14:05:09.100 > refused: $RE 0<CR>\n",
      port.trace());
}

TEST(TraceFile, RollsOnceWhenFullKeepingOnlyTheNewestOlderFile) {
  const std::string dir = testing::makeTempDir("trace");
  TraceFile file(dir + "pump.trace", 40);
  for (int i = 0; i < 7; ++i) {
    ASSERT_TRUE(file.appendLine("line " + std::to_string(i) + " ........"));  // 16 bytes + LF
  }
  // Two lines fit in 40 bytes; line 6 started a fresh file after lines 4 and 5 rolled.
  EXPECT_EQ(testing::readFile(dir + "pump.trace"), "line 6 ........\n");
  EXPECT_EQ(testing::readFile(dir + "pump.trace.1"), "line 4 ........\nline 5 ........\n");
  EXPECT_FALSE(std::filesystem::exists(dir + "pump.trace.2"));
  // A line longer than the whole limit is still written, alone in its file.
  ASSERT_TRUE(file.appendLine(std::string(50, 'x')));
  EXPECT_EQ(testing::readFile(dir + "pump.trace"), std::string(50, 'x') + "\n");
  // A missing folder is made; a folder that cannot be made is refused.
  EXPECT_TRUE(TraceFile(dir + "new/folder/x.trace").appendLine("x"));
  EXPECT_EQ(testing::readFile(dir + "new/folder/x.trace"), "x\n");
  EXPECT_FALSE(TraceFile(dir + "pump.trace/x.trace").appendLine("x"));
}

}  // namespace
}  // namespace zorvel
