#include "sim/scripted_peer.h"

namespace zorvel::sim {

void ScriptedPeer::on(std::string expect, std::string reply, double delayS) {
  steps_.push_back(Step{std::move(expect), std::move(reply), delayS});
}

void ScriptedPeer::onReceive(std::string_view bytes, double arrivedS, LineEnd& reply) {
  sent.append(bytes);
  pending_.append(bytes);
  while (!steps_.empty()) {
    const std::size_t at = pending_.find(steps_.front().expect);
    if (at == std::string::npos) return;
    pending_.erase(0, at + steps_.front().expect.size());
    reply.transmit(steps_.front().reply, arrivedS + steps_.front().delayS);
    steps_.pop_front();
  }
}

}  // namespace zorvel::sim
