#pragma once

#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace zorvel {

// The dilutor's devices answer every frame, in the order the frames reached them: the ledger
// counts the answers still due on the line, so that one which arrives after the command that
// asked for it has been found ready is never read as news about the next command. Questions are
// sent while earlier answers are still on their way, so at the end of a command the answer to
// the last one is still due; the next command passes over it instead of waiting for it.
class PumpReplyLedger {
 public:
  // Every answer has come this long after the frame that asked for it, even through an adapter
  // that holds characters back; one that has not, never will.
  static constexpr double kAnswerWithinS = 0.25;

  // A frame went out: its device owes one answer.
  void frameSent(double atS);
  // A command is about to go: the answers still due belong to earlier frames. Those that have
  // had time to arrive and did not are written off.
  void beginCommand(double nowS);
  // The line has been quiet since answers were due, or the port was opened afresh: nothing more
  // is coming.
  void writeOff();
  // When every answer due should have arrived.
  double allDueByS() const { return lastFrameS_ + kAnswerWithinS; }

  // Cuts a burst of input into whole answers and settles one due answer for each; returns those
  // that answer the present command's frames, in order. A burst ends where an answer ends or
  // where the line fell quiet: a piece left at its end is an answer of its own, from a device
  // that frames none.
  std::vector<std::string> take(std::string_view burst);
  // True when the text ends exactly where an answer ends.
  static bool endsWhole(std::string_view text);
  // The input discarded before and after a command settles the answers it holds; a piece of an
  // answer goes with it, and the rest of that answer, when it comes, settles it.
  void passOver(std::string_view text);

 private:
  int due_ = 0;      // answers still to come, for all frames sent
  int earlier_ = 0;  // of those, answers to frames sent before the present command
  double lastFrameS_ = -std::numeric_limits<double>::infinity();
};

}  // namespace zorvel
