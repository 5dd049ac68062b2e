#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace zorvel {

// The shared input file of the preferences and method readers. Their lines have the form
// key "?=" value; the keys are never compared, the readers rely on the order of the lines.
class KeyValueReader {
 public:
  // What ReadTextValue returns once the file is used up.
  static constexpr std::string_view kEofMarker = "&^EOF^&";

  // Opens a file for reading; false when it cannot be opened.
  bool open(const std::string& path);
  // Reads from text already in memory, as if it were the file.
  void openText(std::string text);
  bool isOpen() const { return open_; }
  void close() { open_ = false; }
  bool atEnd() const { return !open_ || pos_ >= text_.size(); }

  // Reads one comma-delimited field and converts the text after its first "=" (rounded to an
  // integer, halves to even). At the end of the file it closes the file and returns false.
  // Text that is no number, or leaves 16 bits, keeps the old value and still returns true.
  bool ReadIntValue(std::int16_t& value);
  // The same for a single-precision value.
  bool ReadSingleValue(float& value);
  // Reads one whole line and returns the text after its first "=", unchanged (blanks and commas
  // included); returns kEofMarker at the end of the file, which it closes.
  std::string ReadTextValue();

  // The value text of the last read (after its "=", before any conversion) and the line it
  // stood on, counted from 1: what a reader names when it refuses a value.
  const std::string& lastValueText() const { return lastValue_; }
  int lastLine() const;

 private:
  std::string readField();
  std::string readLine();
  void skipLineEnd();

  std::string text_;
  std::size_t pos_ = 0;
  std::size_t lastStart_ = 0;
  std::string lastValue_;
  bool open_ = false;
};

// The text after the first "=", or the whole text when it has none.
std::string_view ValueAfterEquals(std::string_view text);

}  // namespace zorvel
