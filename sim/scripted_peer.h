#pragma once

#include <deque>
#include <string>
#include <string_view>

#include "sim/simulated_line.h"

namespace zorvel::sim {

// A peer that answers from a script: when the bytes it expects have arrived, it sends the
// scripted reply after a delay. Everything the program sent is kept as a byte transcript.
class ScriptedPeer final : public LinePeer {
 public:
  // When `expect` has arrived (after anything already matched), reply after delayS.
  void on(std::string expect, std::string reply, double delayS = 0.0);

  void onReceive(std::string_view bytes, double arrivedS, LineEnd& reply) override;

  // Everything the program wrote, in order.
  std::string sent;
  // True when every scripted step has been matched.
  bool done() const { return steps_.empty(); }

 private:
  struct Step {
    std::string expect;
    std::string reply;
    double delayS;
  };
  std::deque<Step> steps_;
  std::string pending_;
};

}  // namespace zorvel::sim
