#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <limits>
#include <string>
#include <string_view>

#include "core/instruments/fluorimeter_model.h"
#include "core/instruments/fluorimeter_protocol.h"
#include "core/instruments/instrument_error.h"
#include "core/instruments/patient_line.h"
#include "core/instruments/repeat_bound.h"
#include "core/platform/clock.h"
#include "core/platform/operator.h"
#include "core/platform/serial_line.h"
#include "core/state/link_state.h"

namespace zorvel {

// Which status reader answers a command: the run and the intensity check wait 10 seconds
// for a status line, "$SC 1" reads a six-character status, the water-cell check waits for
// its status without a limit of its own and shows "0002" as an error.
enum class StatusReader { Command, Scan, Water };

// Text read up to a terminator; "Bad**" with ReadTimeout after 30 seconds of silence.
struct TerminatedText {
  std::string text;
  LinkFailure failure = LinkFailure::None;
};

// The three text fields of a reading record.
struct ReadingRecord {
  std::string fieldA;  // excitation the instrument is at
  std::string fieldB;  // emission
  std::string fieldC;  // intensity times 1000
  LinkFailure failure = LinkFailure::None;
  bool failed() const { return failure != LinkFailure::None; }
};

struct Reading {
  double intensity = 0.0;  // field C divided by 1000
  LinkFailure failure = LinkFailure::None;
};

struct StatusRecord {
  std::array<std::string, 9> fields;
  LinkFailure failure = LinkFailure::None;
  bool failed() const { return failure != LinkFailure::None; }
};

struct TimeDriveHeaderReply {
  fluor::TimeDriveHeader fields;
  LinkFailure failure = LinkFailure::None;
};

// The conversation with the fluorimeter over one line. Each window that talks to the
// instrument holds one for its port; the line, clock, operator and shared link state are
// borrowed. Every wait blocks on the line until data or its deadline, so waiting costs no
// processor time.
//
// Once the program has been halted, or the port was lost, every call returns at once with a
// failure whose outcome is Stop, so that callers unwind without further boxes.
class FluorimeterLink {
 public:
  // A record that stops arriving for this long is given up as "Bad**".
  static constexpr double kRecordSilenceS = 30.0;
  // A reading record must have ended this long after its read time, whatever arrives meanwhile:
  // the same 30 seconds a silent line is granted before a record, while a true record of some
  // thirty characters takes about 30 ms at 9600 baud. A line that trickles junk without the DEL
  // is thus resent after read time plus 30 seconds, not after 4,096 characters.
  static constexpr double kRecordMarginS = kRecordSilenceS;
  // Size of the input buffer a scan needs so that its numbers fit.
  static constexpr std::size_t kScanBufferSize = 4096;
  // No reply the instrument sends holds more characters before its terminator; a stream that
  // goes on past this is not a reply.
  static constexpr std::size_t kLongestReply = 4096;
  // Refusals of one command, bad record statuses and off-target readings of one reading before
  // the operator is asked; records that never came (30 seconds of silence each).
  static constexpr int kRefusalBound = 5;
  static constexpr int kMissingRecordBound = 2;

  // `preference` names the model (FluorimeterModelFor), which decides the reading record's shape.
  FluorimeterLink(SerialLine& line, Clock& clock, Operator& person, LinkState& links,
                  int preference);

  // Receives the status text of each command while it is in progress.
  void setStatusText(std::function<void(const std::string&)> show) {
    showStatus_ = std::move(show);
  }
  bool halted() const { return halted_; }

  // Opens the port at the patient line's settings and throws away whatever was already waiting.
  LinkFailure OpenFluorimeterPort();
  // Closes the port, gives it the 4096-character input buffer and opens it again.
  LinkFailure PrepareScanBuffer();

  // Sends the command and its CR until the status reader accepts it. Returns None, or a
  // failure whose outcome is Stop.
  LinkFailure IssueCommand(std::string_view command, StatusReader reader,
                           std::string_view statusText = {});

  // Status readers: None when accepted, ReplyTimeout or DeviceFault when the command must be
  // sent again, or a Stop failure.
  LinkFailure AwaitCommandStatus();
  LinkFailure AwaitScanStatus();
  LinkFailure AwaitWaterStatus();

  // The text before the terminator; "Bad**" after 30 seconds of silence, or once the clock
  // reaches deadlineS (on the monotonic scale) without the terminator.
  TerminatedText ReadToTerminator(char terminator,
                                  double deadlineS = std::numeric_limits<double>::infinity());
  // A reading record that has ended within withinS, counted from the call.
  ReadingRecord ReadReadingRecord(double withinS = std::numeric_limits<double>::infinity());
  // One "$RD" reading, sent again until its record arrives whole and at the wavelengths
  // asked for. The caller has set slits and monochromators.
  Reading TakeReading(double excitationNm, double emissionNm, float readTimeS,
                      fluor::AcceptanceRule rule);
  StatusRecord ReadStatusRecord();
  TimeDriveHeaderReply ReadTimeDriveHeader();
  // One streamed number; the character that ends it is consumed. Empty when the first
  // character is not part of a number.
  TerminatedText ReadNumberToken();

  // Tells the operator the link has failed and ends the program.
  void HaltOnLinkFailure();

  // After a bound on repeats: tells the operator what the instrument kept answering ("The
  // fluorimeter on COM1 (...)" + what) and returns true for Retry.
  bool RetryAfterRepeats(const std::string& what);
  // Throws away what arrives until the line has been quiet for quietS (a stream that runs on
  // past what the caller reads), and for no longer than limitS in all.
  void DrainUntilQuiet(double quietS, double limitS);
  // Names the instrument and its port for messages.
  std::string instrumentOnPort() const;

 private:
  bool lineDown() const;
  LinkFailure reportLost();
  // Waits until n characters are waiting where the instrument itself sets no limit (scan
  // status, water status, time-drive header, number stream), giving the operator Retry/Cancel
  // after each of the patient line's bounds without a byte.
  LinkFailure waitPatiently(std::size_t n);
  char readOne();
  void discardFollowingCharacter();
  std::string readStatusLine();
  // The bounds of one reading's loop: false when the operator gave it up.
  bool tolerateMissingRecord(RepeatBound& bound, const std::string& command);
  bool tolerateBadRecordStatus(RepeatBound& bound, const std::string& command);
  bool tolerateOffTarget(RepeatBound& bound, const std::string& command,
                         const ReadingRecord& record, double excitationNm, double emissionNm);

  SerialLine& line_;
  Clock& clock_;
  Operator& person_;
  LinkState& links_;
  const FluorimeterModel& model_;
  std::function<void(const std::string&)> showStatus_;
  PatientLine patient_;
  bool halted_ = false;
  // The last status as it arrived, and what ended the last record read that failed.
  std::string lastStatus_;
  std::string lastTrouble_;
  // How long the record being read may take in all, for the message when it took longer.
  double recordBoundS_ = 0.0;
};

}  // namespace zorvel
