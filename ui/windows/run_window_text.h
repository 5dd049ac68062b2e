#pragma once

#include <QString>
#include <string>

#include "core/text/number_format.h"

// The run window's text conversions, shared by its files.
namespace zorvel::ui::run_text {

// Run texts are single-byte, as the data files are.
inline QString latin1(const std::string& text) {
  return QString::fromLatin1(text.data(), static_cast<int>(text.size()));
}

// The scale entries: the run keeps its scale in single precision, and shows it so.
inline QString asNumber(double value) {
  return QString::fromStdString(text::plainSingle(static_cast<float>(value)));
}

}  // namespace zorvel::ui::run_text
