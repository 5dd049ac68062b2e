#pragma once

#include <string>
#include <string_view>

#include "core/platform/operator.h"
#include "core/state/app_state.h"
#include "core/state/method_settings.h"

// The method file: lines of key "?=" value ended by CR LF in a fixed order, the format version
// first, then the fixed-wavelength, synchronous-scan and autosampler sections when the method
// uses them. Keys are written but never compared on reading: the order of the lines is the
// format.
namespace zorvel {

inline constexpr std::string_view kMethodFileVersion = "12";
inline constexpr std::string_view kFixedSectionMarker = "FIXED SCAN SECTION";
inline constexpr std::string_view kFixedSectionHeadings = "ExWl EmWl ExSl EmSl";
inline constexpr std::string_view kSynchSectionMarker = "SYNCH SCAN SECTION";
inline constexpr std::string_view kAutosamplerSectionMarker = "AUTOSAMPLER SECTION";

// The whole text of the method file for these settings.
std::string MethodFileText(const MethodSettings& method);

// One row of the fixed section: ExWl, EmWl, ExSl, EmSl and ColourIndex, each with its sign
// place and a trailing blank, the first four padded to 14-column print zones (CR LF included).
std::string FixedPairLine(const ColourDeclaration& pair);

// Writes the method to the path (created or overwritten, replaced whole). False when the file
// cannot be written; no message is shown.
bool WriteMethodFile(const MethodSettings& method, const std::string& path);
// Writes the current method. A relative path is taken inside MethodsDirectory, where a method
// is saved.
bool WriteMethodFile(const AppState& state, const std::string& path);

// Fills state.Method from the method file at the path. On any failure (the file cannot be
// read, a version other than "12", a file that ends before its last line) it beeps, shows the
// "Invalid Methods File" box with the offending text, and returns false; the fields read before
// the failure keep their new values. A section the file does not hold leaves its fields as they
// were. LineEnding is not touched: it follows FileType when the method is shown.
bool ReadMethodFile(AppState& state, Operator& op, const std::string& path);

// The text of the failure box for an offending text.
std::string InvalidMethodFileMessage(std::string_view offending);

}  // namespace zorvel
