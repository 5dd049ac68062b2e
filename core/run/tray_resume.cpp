#include "core/run/tray_resume.h"

#include <algorithm>
#include <array>

#include "core/text/number_format.h"

namespace zorvel {

namespace {

std::string whole(int value) {
  return text::fixed(static_cast<double>(value), 0);
}

bool rangeTube(const TrayVisit& visit) {
  return visit.type == SampleType::Sample || visit.type == SampleType::Pure;
}

// The records each file gained since the run started; nothing when one lost records.
std::optional<std::array<int, 6>> gained(const SetRecordCounts& now, const SetRecordCounts& was) {
  const std::array<int, 6> d{now.fix - was.fix, now.syn - was.syn, now.ctl - was.ctl,
                             now.blk - was.blk, now.stl - was.stl, now.slk - was.slk};
  if (std::any_of(d.begin(), d.end(), [](int n) { return n < 0; })) return std::nullopt;
  return d;
}

// "closing control", "closing blank" or both, for the visits left after the range.
std::string closingLeft(const std::vector<TrayVisit>& plan, std::size_t from) {
  bool control = false, blank = false;
  for (std::size_t k = from; k < plan.size(); ++k) {
    control = control || plan[k].type == SampleType::Control;
    blank = blank || plan[k].type == SampleType::Blank;
  }
  if (control && blank) return "the closing control and blank";
  return control ? "the closing control" : "the closing blank";
}

}  // namespace

TrayPlanInput JournalPlanInput(const TrayJournal& j, const MethodSettings& method,
                               AutosamplerSettings& tray) {
  tray = method.Autosampler;
  tray.StartingTube = static_cast<std::int16_t>(j.startingTube);
  tray.EndingTube = static_cast<std::int16_t>(j.endingTube);
  tray.HasStandard = j.hasStandard;
  tray.StandardTube = static_cast<std::int16_t>(j.standardTube);
  tray.StandardFreq = static_cast<std::int16_t>(j.standardFreq);
  tray.HasBlank = j.hasBlank;
  tray.BlankTube = static_cast<std::int16_t>(j.blankTube);
  tray.BlankFreq = static_cast<std::int16_t>(j.blankFreq);
  return TrayPlanInput{tray, method.NoPures, j.puresPending, j.buildingDatabases};
}

std::vector<RecordFile> RecordsOfVisit(const TrayVisit& visit, const MethodSettings& method) {
  RecordFile fixed = RecordFile::Fix, scan = RecordFile::Syn;
  if (visit.type == SampleType::Control) fixed = RecordFile::Ctl, scan = RecordFile::Stl;
  if (visit.type == SampleType::Blank) fixed = RecordFile::Blk, scan = RecordFile::Slk;
  std::vector<RecordFile> records;
  for (int r = 1; r <= std::max<int>(method.Repetitions, 1); ++r) {
    if (method.Fixed) records.push_back(fixed);
    if (method.Synch) records.push_back(scan);
  }
  return records;
}

std::optional<TrayResume> FindTrayResume(const MethodSettings& method, const DataSetPaths& paths) {
  const std::optional<TrayJournal> journal = ReadTrayJournal(TrayJournalPath(paths));
  if (!journal || journal->completed) return std::nullopt;
  auto left = gained(CountSetRecords(method, paths), journal->recordsAtStart);
  if (!left) return std::nullopt;
  TrayResume r;
  r.journal = *journal;
  AutosamplerSettings tray;
  const std::vector<TrayVisit> plan = PlanTray(JournalPlanInput(*journal, method, tray));
  r.numbering = {journal->sampleNumber, journal->firstSampleNumber, journal->firstRead, false,
                 journal->pureStartPending};
  r.puresPending = journal->puresPending;
  for (; r.visit < plan.size(); ++r.visit) {
    const TrayVisit& visit = plan[r.visit];
    const std::vector<RecordFile> records = RecordsOfVisit(visit, method);
    r.recordsDone = 0;
    for (RecordFile file : records) {
      int& count = (*left)[static_cast<std::size_t>(file)];
      if (count == 0) break;
      --count;
      ++r.recordsDone;
    }
    if (r.recordsDone < static_cast<int>(records.size())) break;
    if (visit.endsPures) r.puresPending = false;
    NumberTube(r.numbering, visit.type);
    if (visit.type == SampleType::Sample) r.numbering.FirstRead = false;
    if (rangeTube(visit)) r.lastTube = visit.tube;
  }
  // Every record the run planned is on disk, or records it cannot have written are.
  if (r.visit == plan.size()) return std::nullopt;
  if (std::any_of(left->begin(), left->end(), [](int n) { return n != 0; })) return std::nullopt;
  for (std::size_t k = r.visit; k < plan.size() && r.nextTube == 0; ++k) {
    if (rangeTube(plan[k])) r.nextTube = plan[k].tube;
  }
  if (r.nextTube == 0) r.closingLeft = closingLeft(plan, r.visit);
  return r;
}

std::string ResumeQuestion(const TrayResume& r) {
  const TrayJournal& j = r.journal;
  const std::string range = whole(j.startingTube) + " - " + whole(j.endingTube);
  std::string text = "The tray run started " + j.startDate + " " + j.startTime;
  text += r.lastTube == 0 ? " ended before tube " + whole(j.startingTube)
                          : " ended after tube " + whole(r.lastTube);
  text += " of " + range + ".  ";
  if (r.nextTube != 0) return text + "Resume at tube " + whole(r.nextTube) + "?";
  return text + "Resume with " + r.closingLeft + "?";
}

}  // namespace zorvel
