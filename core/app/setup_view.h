#pragma once

#include <string>

namespace zorvel {

// What the setup window ("ZORVEL Setup") shows; the Qt window implements it.
class SetupView {
 public:
  virtual ~SetupView() = default;

  // "Cancel", or "Exit" when no preferences file exists yet.
  virtual void setCancelCaption(const std::string& caption) = 0;
  virtual void showModel(int fluorimeter) = 0;
  virtual void showPorts(int fluorimeter, int dilutor, int autosampler) = 0;
  virtual void showPrinter(bool available) = 0;
  virtual void showAutosampler(bool available) = 0;
  // The plate-description, dilutor and autosampler frames, and the window's height in twips
  // (5100 with them, 3800 without).
  virtual void setAutosamplerFramesVisible(bool visible, int heightTwips) = 0;
  virtual void setBaseDirectoryLabel(const std::string& path) = 0;
  virtual void setPlateFileLabel(const std::string& path) = 0;
  // The directory list: where it stands, moving it, and listing again after a change.
  virtual std::string directoryListPath() const = 0;
  virtual void setDirectoryListPath(const std::string& path) = 0;
  virtual void refreshDirectoryList() = 0;
  virtual void close() = 0;
};

}  // namespace zorvel
