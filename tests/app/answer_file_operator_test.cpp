#include "core/app/answer_file_operator.h"

#include <sstream>

#include <gtest/gtest.h>

namespace zorvel {
namespace {

TEST(AnswerFileOperator, AnswersBoxesInOrderAndPrintsThem) {
  AnswerScript script;
  script.loadText("# a run\n\nyes\n  text 12 \ncancel\n");
  std::ostringstream out;
  AnswerFileOperator op(script, out);
  EXPECT_EQ(op.message("Create them?\rReally\n\nSure", "Q", BoxIcon::Question, BoxButtons::YesNo),
            answer::kYes);
  EXPECT_EQ(op.inputBox("Number?", "Reset", "3"), "12");
  EXPECT_EQ(op.message("Go on?", "Q", BoxIcon::None, BoxButtons::RetryCancel), answer::kCancel);
  EXPECT_FALSE(script.failed());
  EXPECT_EQ(
      out.str(),
      "[Q] Create them? | Really | Sure (yes/no)\n  > yes\n[Reset] Number? (text VALUE)\n  > 12\n"
      "[Q] Go on? (retry/cancel)\n  > cancel\n");
}

TEST(AnswerFileOperator, AMisfitOrAMissingAnswerFailsSafely) {
  AnswerScript script;
  script.loadText("retry\nok\n");
  std::ostringstream out;
  AnswerFileOperator op(script, out);
  // "retry" cannot answer a Yes/No box: the run is told, and the box gets No.
  EXPECT_EQ(op.message("Delete?", "Q", BoxIcon::None, BoxButtons::YesNo), answer::kNo);
  EXPECT_NE(script.failure().find("line 1 \"retry\" does not answer"), std::string::npos);
  // Once failed, nothing more is taken from the script.
  EXPECT_EQ(op.message("Note", "N"), answer::kOk);
  EXPECT_FALSE(script.usedUp());

  AnswerScript empty;
  AnswerFileOperator op2(empty, out);
  EXPECT_EQ(op2.message("Save?", "Q", BoxIcon::None, BoxButtons::YesNoCancel), answer::kCancel);
  EXPECT_NE(empty.failure().find("ran out"), std::string::npos);
  EXPECT_EQ(op2.fileDialog(FileDialogRequest{}), "");
}

}  // namespace
}  // namespace zorvel
