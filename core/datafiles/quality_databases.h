#pragma once

#include <string>

namespace zorvel {

// Where the control and blank checks keep their databases. The data-set commands tell them
// when a set is created (the counts start again at 0) and when one is reopened (the databases
// are loaded from the set's ".CTL" and ".BLK" files).
class QualityDatabases {
 public:
  virtual ~QualityDatabases() = default;
  virtual void resetCounts() = 0;
  virtual void load(const std::string& ctlPath, const std::string& blkPath) = 0;
  // The run builds the databases: entries added from now until both hold three are batch 1.
  virtual void setBuilding(bool /*building*/) {}
};

// For callers that keep no databases (checks, tools, tests of the files alone).
class NoQualityDatabases final : public QualityDatabases {
 public:
  void resetCounts() override {}
  void load(const std::string&, const std::string&) override {}
};

}  // namespace zorvel
