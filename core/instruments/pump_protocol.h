#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace zorvel {

// The dilutor's framed protocol: the syringe pump (address 1) and the valve unit (address 3)
// share one line. A frame is 255, STX, the address digit, the sequence character "1", the
// command text, ETX and a checksum that XORs every byte from STX to ETX.

inline constexpr std::int16_t kPumpAddress = 1;
inline constexpr std::int16_t kValveAddress = 3;
// A device that has finished its command and is ready says so with this byte.
inline constexpr unsigned char kPumpReadyByte = 96;
// The pump's full stroke; volumes become steps through StepsPerMicrolitre.
inline constexpr int kPumpStrokeSteps = 3000;

// XOR of every byte of the text (STX to ETX inclusive when given a frame's body).
std::uint8_t PumpChecksum(std::string_view bytes);
// The whole frame as it goes on the line.
std::string PumpFrame(std::int16_t address, std::string_view command);
// The status query: the frame with the command "Q".
std::string PumpQueryFrame(std::int16_t address);
// True when any byte of a reply is the ready byte.
bool PumpReplyShowsReady(std::string_view reply);
// The text cut into whole replies, each ending with ETX and the checksum after it, and what
// follows the last of them (a reply still arriving).
struct PumpReplyText {
  std::vector<std::string> replies;
  std::string rest;
};
PumpReplyText PumpSplitReplies(std::string_view text);
// The error a reply's status byte reports, 0 for none. The status byte follows STX and the
// answering address "0"; it carries 64 always, 32 when the device is ready, and an error code in
// its low four bits (96 is ready without error, 0x67 ready after error 7).
int PumpReplyError(std::string_view reply);
// The device's own name for an error code: "device not initialised" for 7, "plunger overload"
// for 9; "error 5" for a code without one.
std::string PumpErrorName(int code);

// Steps per microlitre of a syringe (mL): the full stroke over the syringe's volume in uL,
// 0.3 for 10 mL, 0.6 for 5 mL; 0 for a volume that is not a syringe.
float StepsPerMicrolitre(std::int16_t syringeVolumeMl);

// "Y2A1R" to "Y2A4R" for valve ports 1 to 4, empty text for any other port.
std::string ValvePortCommand(std::int16_t port);
// Mode 1 absolute ("IS10A 500R"), mode 2 relative dispense ("IS10D 500R"); any other mode
// sets the speed only ("IS10"). The volume is written with one blank before it when it is
// not negative.
std::string PumpDispenseCommand(std::int16_t mode, std::int16_t speed, std::int16_t volumeSteps);
// "IS10P500R": draw by the volume in steps.
std::string PumpFillCommand(std::int16_t speed, std::int16_t volumeSteps);
// "OS18P75R": draw the rinse volume, given in uL, from the solvent side.
std::string PumpFlushDrawCommand(std::int16_t speed, std::int16_t flushVolumeUl,
                                 float stepsPerMicrolitre);
// "IS10A0R": push the whole syringe out through the probe.
std::string PumpFlushEmptyCommand(std::int16_t speed);

}  // namespace zorvel
