#include "core/method/method_editor.h"

#include <gtest/gtest.h>

#include "core/platform/scripted_operator.h"
#include "method/fake_editor_views.h"
#include "method/method_examples.h"

namespace zorvel {
namespace {

using C = MethodControl;

struct Editor {
  Editor() {
    FillColourTables(state);
    state.Method = testing::FixedCuvetteMethod();
    editor.setView(&view);
  }
  // The text of the last box shown.
  std::string lastMessage() const {
    const auto boxes = op.messages();
    return boxes.empty() ? std::string() : boxes.back().text;
  }
  AppState state;
  ScriptedOperator op;
  testing::FakeEditorView view;
  MethodEditor editor{state, op};
};

TEST(MethodEditorFields, EachCommittedBoxWritesTheRecordOrIsRefusedKeepingTheValueInForce) {
  Editor e;
  MethodSettings& m = e.state.Method;
  EXPECT_TRUE(e.editor.textCommitted(C::ScnSpd_Box, "-5"));
  EXPECT_EQ(m.ScanSpeed, -5);
  EXPECT_TRUE(e.op.shown.empty());
  EXPECT_FALSE(e.editor.textCommitted(C::ScnSpd_Box, "-"));
  EXPECT_FALSE(e.editor.textCommitted(C::ScnSpd_Box, "-5q"));
  EXPECT_EQ(m.ScanSpeed, -5);
  EXPECT_EQ(e.editor.textOf(C::ScnSpd_Box), "-5");
  EXPECT_EQ(e.op.beeps, 2);
  EXPECT_EQ(e.lastMessage(), "Answer must be numeric.  Please try again.");
  EXPECT_EQ(e.op.messages().back().title, "ZORVEL ERROR");
  EXPECT_EQ(e.view.selected, C::ScnSpd_Box);

  EXPECT_TRUE(e.editor.textCommitted(C::ScanUL_Box, ""));  // cleared silently
  EXPECT_EQ(e.op.messages().size(), 2u);
  EXPECT_FALSE(e.editor.textCommitted(C::ScanLL_Box, ""));  // warns
  EXPECT_EQ(e.op.messages().size(), 3u);
  EXPECT_NE(m.SynchScan.LowerLimit, -1);
  EXPECT_EQ(m.SynchScan.UpperLimit, -1);

  EXPECT_TRUE(e.editor.textCommitted(C::AmtSolv_Box, ""));
  EXPECT_EQ(m.AmtSolvent, 2.5f);
  const std::int16_t colours = m.NoColors;
  EXPECT_FALSE(e.editor.textCommitted(C::nColors_Box, "31"));
  EXPECT_EQ(e.lastMessage(), "Number of colors must be between 1 and 30.");
  EXPECT_EQ(m.NoColors, colours);
  EXPECT_TRUE(e.editor.textCommitted(C::nColors_Box, "30"));
  EXPECT_EQ(m.NoColors, 30);
  EXPECT_EQ(m.NoPures, 30);
  EXPECT_FALSE(e.editor.textCommitted(C::PMTVoltage, "901"));
  EXPECT_EQ(e.lastMessage(), "PMT voltage must be between 0 and 900.");
  EXPECT_TRUE(e.editor.textCommitted(C::NumReps_Box, "2.5"));  // halves to even
  EXPECT_EQ(m.Repetitions, 2);
  EXPECT_FALSE(e.editor.textCommitted(C::swell_box, "one"));
  EXPECT_EQ(e.lastMessage(), "Answer must be a positive integer.  Please try again.");
  EXPECT_TRUE(e.editor.textCommitted(C::Op_Box, " A. N. "));
  EXPECT_EQ(m.Operator, " A. N. ");
  EXPECT_EQ(e.op.messages().size(), 6u);
}

TEST(MethodEditorFields, OptionGroupsStoreTheirIndexAndShowWhatBelongsToThem) {
  Editor e;
  MethodSettings& m = e.state.Method;
  e.editor.optionClicked(C::ScanType, 2);
  EXPECT_TRUE(!m.Fixed && m.Synch);
  EXPECT_TRUE(e.view.visible[C::Synch_Box]);
  EXPECT_FALSE(e.view.visible[C::Colors_Button]);
  e.editor.optionClicked(C::ScanType, 3);
  EXPECT_TRUE(m.Fixed && m.Synch && e.view.visible[C::Colors_Button]);
  e.editor.optionClicked(C::Voltage_grp, 1);
  EXPECT_EQ(m.PMTVoltage, -1);
  EXPECT_FALSE(e.view.visible[C::PMTVoltage]);
  e.view.texts[C::PMTVoltage] = "650";
  e.editor.optionClicked(C::Voltage_grp, 2);
  EXPECT_EQ(m.PMTVoltage, 650);
  e.editor.optionClicked(C::Delivery, 2);
  EXPECT_EQ(m.DeliveryMethod, Delivery::Autosampler);
  EXPECT_TRUE(e.view.visible[C::ASSetup] && e.view.visible[C::TrayFile]);
  e.editor.optionClicked(C::FileType, 2);
  EXPECT_EQ(e.state.LineEnding, "\r");
  e.editor.optionClicked(C::Filter_grp, 8);
  EXPECT_EQ(m.FilterSetting, EmissionFilter::Transmittance1Percent);
  e.editor.checkChanged(C::UsePrn_Box, true);
  EXPECT_TRUE(m.PrintResults);

  // Showing a method fills every control and writes nothing back.
  e.state.Method = testing::FixedSynchCuvetteMethod();
  e.editor.showMethod();
  EXPECT_TRUE(e.state.Method == testing::FixedSynchCuvetteMethod());
  EXPECT_EQ(e.view.texts[C::ScnSpd_Box], "-240");
  EXPECT_EQ(e.view.texts[C::ScanDInt_Box], "0.5");
  EXPECT_EQ(e.view.options[C::ScanType], 3);
  EXPECT_EQ(e.view.options[C::Voltage_grp], 1);  // -1 is the instrument's default voltage
  EXPECT_EQ(e.view.options[C::FileType], 2);
  EXPECT_FALSE(e.view.visible[C::ASSetup]);

  // "AS Setup" is offered only where the autosampler window exists.
  e.editor.ControlsVisible(true);
  EXPECT_TRUE(e.view.enabled[C::nColors_Box]);
  EXPECT_FALSE(e.view.enabled[C::ASSetup]);
  e.editor.setAutosamplerWindowOpener([] {});
  e.editor.ControlsVisible(true);
  EXPECT_TRUE(e.view.enabled[C::ASSetup]);
}

TEST(MethodEditorFields, FourWaysToggleTheHiddenPanel) {
  Editor e;
  const KeyModifiers ctrlShift{true, false, true};
  EXPECT_TRUE(e.editor.keyTyped("~", C::OKButton));
  EXPECT_TRUE(e.view.qxVisible);
  EXPECT_FALSE(e.editor.keyTyped("~", C::Save));
  EXPECT_TRUE(e.editor.keyPressed(EditorKey::F4, {true, true, true}, C::Op_Box));
  EXPECT_FALSE(e.view.qxVisible);
  EXPECT_FALSE(e.editor.keyPressed(EditorKey::F12, ctrlShift, C::OKButton));
  EXPECT_TRUE(e.editor.keyPressed(EditorKey::F12, ctrlShift, C::Save));
  EXPECT_FALSE(e.editor.keyPressed(EditorKey::F4, {true, false, false}, C::Save));
  e.editor.toggleQXPanel();
  EXPECT_FALSE(e.view.qxVisible);
  EXPECT_FALSE(e.editor.state().QXPanelShown);
}

}  // namespace
}  // namespace zorvel
