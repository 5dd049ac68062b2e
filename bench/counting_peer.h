#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "sim/simulated_line.h"

namespace zorvel::bench {

// Counts the characters crossing the line in both directions. The status reply to a read
// command travels while the instrument integrates, so its characters are counted apart: they
// cost the line no time of their own.
class CountingPeer final : public sim::LinePeer, public sim::LineEnd {
 public:
  explicit CountingPeer(sim::LinePeer& inner) : inner_(inner) {}
  void onReceive(std::string_view bytes, double arrivedS, sim::LineEnd& reply) override {
    characters += bytes.size();
    for (char c : bytes) {
      command_ += c;
      if (c != '\r') continue;
      readPending_ = command_.rfind("$RD", 0) == 0;
      command_.clear();
    }
    end_ = &reply;
    inner_.onReceive(bytes, arrivedS, *this);
  }
  void transmit(std::string_view bytes, double startS) override {
    characters += bytes.size();
    if (readPending_) charactersDuringReads += bytes.size();
    readPending_ = false;
    end_->transmit(bytes, startS);
  }
  // The time the line itself needs at 9600 baud (960 characters per second).
  double lineBoundS() const {
    return static_cast<double>(characters - charactersDuringReads) / 960.0;
  }

  std::size_t characters = 0;
  std::size_t charactersDuringReads = 0;

 private:
  sim::LinePeer& inner_;
  sim::LineEnd* end_ = nullptr;
  std::string command_;
  bool readPending_ = false;
};

}  // namespace zorvel::bench
