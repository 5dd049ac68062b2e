#include "core/state/file_dialogs.h"

#include <gtest/gtest.h>

#include "core/platform/scripted_operator.h"

namespace zorvel {
namespace {

TEST(ShowFileDialog, EachCallerAsksInItsFolderForItsKindOfFile) {
  AppState state;
  state.MethodsDirectory = "/lab/METHODS";
  state.DataDirectory = "/lab/DATA";
  ScriptedOperator op;
  op.chooseNext("/lab/METHODS/a.mth");
  EXPECT_EQ(file_dialogs::OpenMethod(op, state), "/lab/METHODS/a.mth");
  file_dialogs::AppendDataFile(op, state);  // cancelled: empty text
  state.Method.Fixed = true;
  file_dialogs::SaveDataSet(op, state);
  state.Method.Fixed = false;
  file_dialogs::SaveDataSet(op, state);
  file_dialogs::ChoosePlateFile(op, state);

  ASSERT_EQ(op.shown.size(), 5u);
  const auto& open = op.shown[0].dialog;
  EXPECT_EQ(open.initialDirectory, "/lab/METHODS");
  EXPECT_EQ(open.action, FileDialogAction::Open);
  const auto& append = op.shown[1].dialog;
  EXPECT_EQ(append.initialDirectory, "/lab/DATA");
  const auto& saveFixed = op.shown[2].dialog;
  EXPECT_EQ(saveFixed.defaultExtension, "FIX");
  EXPECT_EQ(saveFixed.action, FileDialogAction::SaveAs);
  EXPECT_EQ(op.shown[3].dialog.defaultExtension, "SYN");
  EXPECT_EQ(op.shown[4].dialog.defaultExtension, "TGF");
  EXPECT_EQ(op.shown[4].dialog.initialDirectory, "/lab/METHODS");
}

}  // namespace
}  // namespace zorvel
