#include "core/autosampler/autosampler_presenter.h"

#include <gtest/gtest.h>

#include <cctype>
#include <map>

#include "autosampler/bench_rig.h"
#include "core/autosampler/field_rules.h"
#include "support/bytes.h"

namespace zorvel {
namespace {

using Lines = std::vector<std::string>;

class FakeView final : public AutosamplerView {
 public:
  void setFieldText(AutosamplerField f, const std::string& text) override { fields[f] = text; }
  void selectFieldText(AutosamplerField f) override { selected.push_back(f); }
  void setOption(AutosamplerGroup g, int index) override { options[g] = index; }
  void setChecked(AutosamplerCheckBox b, bool on) override { checked[b] = on; }
  void setStandardBoxesVisible(bool on) override { standardBoxes = on; }
  void setBlankBoxesVisible(bool on) override { blankBoxes = on; }
  void setFreqCaptionVisible(bool on) override { freqCaption = on; }
  void showArmPosition(float x, float y) override { arm.push_back({x, y}); }
  void setHeightText(const std::string& text) override { height = text; }
  void setSavePositionEnabled(bool on) override { savePos = on; }
  void setSequenceRunning(bool on) override { running = on; }
  void showSequenceStep(const std::string& text) override { steps.push_back(text); }
  void showSequenceProgress(int done, int total) override { progress = {done, total}; }
  void trayChanged() override { ++trayRedraws; }
  void close() override {}

  std::map<AutosamplerField, std::string> fields;
  std::vector<AutosamplerField> selected;
  std::map<AutosamplerGroup, int> options;
  std::map<AutosamplerCheckBox, bool> checked;
  bool standardBoxes = false, blankBoxes = false, freqCaption = false;
  std::vector<std::pair<float, float>> arm;
  std::string height;
  bool savePos = false, running = false;
  int trayRedraws = 0;
  std::vector<std::string> steps;
  std::pair<int, int> progress;
};

TEST(FieldRulesTest, RulesResetTheValueAndSayWhy) {
  AutosamplerSettings s;
  SetAutosamplerDefaults(s, 96);
  s.EndingTube = 24;
  s.SyringeVolume = 5;
  const auto edit = [&](AutosamplerField f, std::string_view text) {
    return ApplyFieldText(s, f, text, 96);
  };
  EXPECT_EQ(edit(AutosamplerField::SampleVolume, "5001"),
            (FieldEditResult{true, "Answer must be in range of 1 - 5000. Please try again.", true,
                             true}));
  EXPECT_EQ(s.SampleVolume, 1);
  EXPECT_EQ(edit(AutosamplerField::SampleVolume, "750.5"), FieldEditResult{});
  EXPECT_EQ(s.SampleVolume, 750);  // halves to even
  EXPECT_EQ(edit(AutosamplerField::BackFlow, "800").message,
            "Answer must be less than or equal to 750.");
  EXPECT_EQ(s.BackFlowVolume, 750);
  // A standard inside the sample range goes to the tube before the blank.
  EXPECT_EQ(edit(AutosamplerField::StandardTube, "10").message,
            "You have the Standard located in the Sample section.");
  EXPECT_EQ(s.StandardTube, 1);
  EXPECT_EQ(edit(AutosamplerField::BlankTube, "1").message,
            "You have the Standards and Blanks coming from the same tube.");
  EXPECT_EQ(s.BlankTube, 2);
  EXPECT_EQ(edit(AutosamplerField::EndingTube, "97").message, "Answer must be in range of 5-96.");
  EXPECT_EQ(s.EndingTube, 1);
  // The frequencies keep what was typed; their non-numeric message differs from the others.
  s.EndingTube = 24;
  const auto freq = edit(AutosamplerField::StandardFreq, "30");
  EXPECT_EQ(freq.message, "Answer must be between 0 and 23. Please try again.");
  EXPECT_FALSE(freq.showValue);
  EXPECT_EQ(s.StandardFreq, 30);
  // No frequency fits a blank past the ending tube: the message names the tube, no range.
  s.EndingTube = -2;
  EXPECT_EQ(edit(AutosamplerField::BlankFreq, "0").message,
            "No frequency fits: the Ending Tube (-2) lies before the Blank tube (2).");
  s.EndingTube = 24;
  EXPECT_EQ(edit(AutosamplerField::BlankFreq, "x").message,
            "Answer must be numeric.  Please try again.");
  EXPECT_EQ(edit(AutosamplerField::AirVolume, "x").message,
            "Non-numeric entry.  Please try again.");
  EXPECT_EQ(s.AirVolume, -1);
  EXPECT_EQ(edit(AutosamplerField::AirDryTime, ""), FieldEditResult{});
  EXPECT_EQ(s.AirDryTime, -1);
}

class Window : public ::testing::Test, public testing::BenchRig {
 protected:
  FakeView view;
  int firstSample = 0;
  std::string trayLabel;
  AutosamplerPresenter presenter{parts(), "/methods/", view,
                                 AutosamplerHooks{[this](int n) { firstSample = n; },
                                                  [this](const std::string& p) { trayLabel = p; }}};
};

TEST_F(Window, OpeningFillsTheBoxesAndTheCheckBoxesShowTheirBoxes) {
  presenter.opened();
  EXPECT_EQ(view.fields[AutosamplerField::SampleVolume], "750");
  EXPECT_EQ(view.fields[AutosamplerField::FlushTime], "8000");
  EXPECT_EQ(view.options[AutosamplerGroup::SyringeVolume], 10);
  EXPECT_EQ(view.options[AutosamplerGroup::Increment], 10);
  EXPECT_TRUE(view.standardBoxes && view.blankBoxes && view.freqCaption);
  presenter.checkBoxChanged(AutosamplerCheckBox::Standard, false);
  EXPECT_FALSE(settings.HasStandard);
  EXPECT_FALSE(view.standardBoxes);
  EXPECT_TRUE(view.freqCaption);
  presenter.checkBoxChanged(AutosamplerCheckBox::Blank, false);
  EXPECT_FALSE(view.freqCaption);

  presenter.fieldEdited(AutosamplerField::StartingTube, "4");
  EXPECT_EQ(firstSample, 4);
  // Beyond the six-tube tray: refused, and the tube in force stays.
  EXPECT_FALSE(presenter.fieldEdited(AutosamplerField::StartingTube, "7"));
  EXPECT_EQ(firstSample, 4);
  EXPECT_EQ(presenter.fieldText(AutosamplerField::StartingTube), "4");
  EXPECT_EQ(person.beeps, 1);
  EXPECT_EQ(person.messages().back().title, "ZORVEL ERROR");

  presenter.optionChosen(AutosamplerGroup::SyringeVolume, 5);
  EXPECT_EQ(links.StepsPerMicrolitre, 0.6f);
  presenter.fieldEdited(AutosamplerField::SampleVolume, "1000");
  EXPECT_EQ(steps.SampleSteps, 600);
}

TEST_F(Window, DoneCorrectsTheBoxesOfEveryFault) {
  presenter.opened();
  settings.FillSpeed = 50;
  settings.AirDryTime = -1;
  EXPECT_FALSE(presenter.done());
  EXPECT_EQ(view.fields[AutosamplerField::FillSpeed], "0");
  EXPECT_EQ(view.selected,
            (std::vector{AutosamplerField::FillSpeed, AutosamplerField::AirDryTime}));
  EXPECT_TRUE(presenter.done());
}

TEST_F(Window, ATrayFileIsShownAsOnDiskAndABadOneKeepsTheTray) {
  const std::string dir = testing::makeTempDir("astray");
  testing::writeFile(dir + "Rack.TGF", "245,20,0\n20,20,1\n");
  testing::writeFile(dir + "Bad.TGF", "245,20,0\n320,x,1\n");
  person.chooseNext(dir + "Missing.TGF");
  person.chooseNext(dir + "Bad.TGF");
  person.chooseNext(dir + "Rack.TGF");
  presenter.openTrayGeometryFile();
  presenter.openTrayGeometryFile();
  EXPECT_EQ(tray.TubeCount, 6);
  presenter.openTrayGeometryFile();
  const auto boxes = person.messages();
  ASSERT_EQ(boxes.size(), 2u);
  EXPECT_EQ(boxes[0].text, "File does not exist");
  EXPECT_EQ(boxes[1].text,
            "The tray geometry file " + dir + "Bad.TGF, line 2: \"x\" is not a number.");
  EXPECT_EQ(person.shown[0].dialog.defaultExtension, "TGF");
  EXPECT_EQ(tray.TubeCount, 1);
  EXPECT_EQ(trayLabel, dir + "Rack.TGF");  // as it is spelt on disk
}

TEST_F(Window, LocateVisitsEveryTubeOfTheRangeAtTheBackfillHeight) {
  settings.StartingTube = 1;
  settings.EndingTube = 3;
  links.Placement.ArmOffsetX = 5;
  presenter.locate();
  EXPECT_EQ(sent(),
            (Lines{"arm SETM ABSPOS=20,20<CR>", "arm SET DOWN=70<CR>", "arm SETM ABSPOS=38,20<CR>",
                   "arm SET DOWN=70<CR>", "arm SETM ABSPOS=56,20<CR>", "arm SET DOWN=70<CR>"}));
  EXPECT_EQ(view.arm.size(), 3u);
  EXPECT_EQ(view.height, "70");
}

TEST_F(Window, LowerProbeAfterRinseGoesToTheRinseHeightOverTheStation) {
  settings.RinseHeight = 60;
  presenter.heightChosen(1);
  presenter.lowerProbe();
  EXPECT_EQ(sent(), (Lines{"arm SETM ABSPOS=245,20<CR>", "arm SET DOWN=60<CR>"}));
  EXPECT_EQ(presenter.positioningMode(), AutosamplerPresenter::kPositionKeep);
  // "Other" goes to the tube typed in TubeToGoTo; a tube past the tray is refused.
  presenter.tubeTyped("7");
  EXPECT_EQ(person.messages().back().text, "Answer must be between 0 and 6.");
  presenter.tubeTyped("6");
  presenter.heightTyped("147");
  EXPECT_EQ(person.messages().back().text, "Range is 0 - 146.  Please try again.");
  presenter.heightChosen(8);
  EXPECT_EQ(sent().back(), "arm SETM ABSPOS=110,20<CR>");
  EXPECT_EQ(view.height, "105");
}

TEST_F(Window, ArrowsStayWithinTheArmsReach) {
  links.Placement.ArmX = 300;
  links.Placement.ArmY = 175;
  presenter.arrow(ArmArrow::Down);  // 185: beyond 181, a beep and no move
  EXPECT_EQ(person.beeps, 1);
  presenter.arrow(ArmArrow::Right);
  EXPECT_EQ(person.beeps, 2);
  links.Placement.ArmY = 5;
  presenter.arrow(ArmArrow::Up);  // -5: silent
  EXPECT_EQ(person.beeps, 2);
  EXPECT_TRUE(sent().empty());
  links.Placement.ArmY = 10;
  links.CurrentArmHeight = 40;
  presenter.arrow(ArmArrow::Up);
  presenter.optionChosen(AutosamplerGroup::Increment, 1);
  presenter.arrow(ArmArrow::Left);
  EXPECT_EQ(sent(), (Lines{"arm SETM ABSPOS=300,0<CR>", "arm SETM ABSPOS=299,0<CR>"}));
  EXPECT_EQ(links.CurrentArmHeight, 0);
  EXPECT_TRUE(view.savePos);
  EXPECT_FALSE(presenter.positionSaved());
  presenter.positionTyped(ArmAxis::Y, "12.5");
  presenter.positionTyped(ArmAxis::X, "abc");
  EXPECT_EQ(sent().back(), "arm SETM ABSPOS=299,12.5<CR>");
  EXPECT_EQ(person.messages().back().text, "Non-numeric entry.  Please try again.");
}

TEST_F(Window, SavePositionAtTheStartingTubeCalibratesEveryLaterMove) {
  presenter.opened();
  presenter.moveToStartingTube();  // tube 3 at 56, 20
  presenter.optionChosen(AutosamplerGroup::Increment, 1);
  presenter.arrow(ArmArrow::Right);
  presenter.arrow(ArmArrow::Down);
  presenter.savePosition();
  EXPECT_FLOAT_EQ(links.Placement.ArmOffsetX, 5.0f);  // 57 - 56 + 4
  EXPECT_FLOAT_EQ(links.Placement.ArmOffsetY, 1.0f);
  EXPECT_FALSE(view.savePos);
  presenter.heightChosen(6);
  EXPECT_EQ(sent().back(), "arm SETM ABSPOS=61,21<CR>");
  // After a choice that leaves the calibration tube, Save Position only keeps the place.
  presenter.heightChosen(7);
  presenter.savePosition();
  EXPECT_FLOAT_EQ(links.Placement.ArmOffsetX, 5.0f);
  EXPECT_FALSE(view.savePos);
}

TEST_F(Window, OnlyOneSequenceRunsAtATime) {
  EXPECT_TRUE(presenter.beginSequence());
  EXPECT_TRUE(view.running);
  EXPECT_FALSE(presenter.beginSequence());
  presenter.endSequence();
  EXPECT_FALSE(view.running);
  EXPECT_TRUE(presenter.beginSequence());
}

}  // namespace
}  // namespace zorvel
