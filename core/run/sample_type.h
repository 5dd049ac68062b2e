#pragma once

#include <string>

namespace zorvel {

// What a reading is: the type names are shown, printed and decide the record letter.
enum class SampleType { Sample, Pure, Blank, Control, Matrix };

inline std::string SampleTypeName(SampleType type) {
  switch (type) {
    case SampleType::Sample:
      return "Sample";
    case SampleType::Pure:
      return "Pure";
    case SampleType::Blank:
      return "Blank";
    case SampleType::Control:
      return "Control";
    case SampleType::Matrix:
      return "Matrix";
  }
  return "";
}

}  // namespace zorvel
