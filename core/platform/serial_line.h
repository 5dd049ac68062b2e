#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace zorvel {

// One RS-232 link to an instrument. The protocols of core/instruments talk through this seam
// only; the desktop supplies a real port, tests a line joined to a simulator.
//
// A line whose device vanishes (an adapter pulled, the far end of a pseudo-terminal closed)
// closes itself at its first error and reports lost() from then on; it never keeps failing.
class SerialLine {
 public:
  virtual ~SerialLine() = default;

  // Opens the port with settings such as "9600,N,8,1"; false when it cannot be opened.
  virtual bool open(std::string_view settings) = 0;
  virtual void close() = 0;
  virtual bool isOpen() const = 0;

  // Queues bytes for sending; false when the line is closed or was lost.
  virtual bool write(std::string_view bytes) = 0;
  // Characters received and not yet read.
  virtual std::size_t charactersWaiting() = 0;
  // Takes up to n waiting characters (never blocks).
  virtual std::string read(std::size_t n) = 0;
  // Throws away every waiting character.
  virtual void discardInput() = 0;
  // Blocks until at least n characters are waiting or the clock's monotonic time reaches the
  // deadline; true when they are waiting. Returns false at once on a closed or lost line.
  virtual bool waitForCharacters(std::size_t n, double deadlineS) = 0;
  // Size of the receive buffer; a scan asks for 4096 characters before it starts.
  virtual void setInputBufferSize(std::size_t size) = 0;

  // True once the device has gone away; the line is closed by then.
  virtual bool lost() const = 0;
  // Names the port for messages, such as "COM1 (/dev/ttyUSB0)".
  virtual std::string describe() const = 0;
  // Why the last open() failed, in the user's words (no such device, no permission, in use);
  // empty when it did not fail or the line cannot tell.
  virtual std::string openFailure() const { return {}; }
};

}  // namespace zorvel
