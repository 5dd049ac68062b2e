#include "core/method/colour_presenter.h"

#include <gtest/gtest.h>

#include "core/platform/scripted_operator.h"
#include "method/fake_editor_views.h"

namespace zorvel {
namespace {

using testing::FakeColourView;

struct ColourWindow {
  explicit ColourWindow(int colours) {
    FillColourTables(state);
    state.Method.NoColors = static_cast<std::int16_t>(colours);
    for (int row = 1; row <= colours; ++row) {
      state.Method.FixedPairs.colour(row) = {340.0f + static_cast<float>(row), 450, 5, 5,
                                             static_cast<std::int16_t>(row % 14)};
    }
    presenter.window().BackupPending = true;
    presenter.setConfirmedListener([this] { ++confirmed; });
  }
  ColourDeclaration& row(int r) { return state.Method.FixedPairs.colour(r); }

  AppState state;
  ScriptedOperator op;
  ColourPresenter presenter{state, op};
  FakeColourView view;
  int confirmed = 0;
};

TEST(ColourWindow, TypingPicksTheColourWithinThreeNanometresAndRejectsText) {
  ColourWindow w(2);
  w.presenter.open(w.view, false);
  EXPECT_EQ(w.view.rows[1].boxes[1], "");  // colours not declared yet: the boxes start empty
  EXPECT_FALSE(w.view.rows[3].visible);
  EXPECT_EQ(w.view.focusedBox, std::make_pair(1, 1));

  w.presenter.boxChanged(1, PairField::ExWl, "383");
  EXPECT_EQ(w.row(1).ColourIndex, 1);  // "Blue"
  EXPECT_EQ(w.view.rows[1].choice, 1);
  w.presenter.boxChanged(1, PairField::ExWl, "386");
  EXPECT_EQ(w.row(1).ColourIndex, 0);  // nothing within 3 nm: "Tissue"
  w.presenter.boxChanged(2, PairField::EmWl, "");
  EXPECT_EQ(w.row(2).EmWl, -1);
  EXPECT_TRUE(w.op.shown.empty());

  w.presenter.boxChanged(2, PairField::ExSl, "5x");
  ASSERT_EQ(w.op.messages().size(), 1u);
  EXPECT_EQ(w.op.messages()[0].text, "Non-numeric entry.  Please try again.");
  EXPECT_EQ(w.op.messages()[0].title, "ZORVEL ERROR");
  EXPECT_EQ(w.view.selected, std::make_pair(2, 3));
  EXPECT_EQ(w.row(2).ExSl, 5);

  // The cleared emission fails the range check at OK, which keeps the window open.
  EXPECT_FALSE(w.presenter.confirm());
  EXPECT_EQ(w.op.messages().back().text, "Answer must be between 200 and 900.");
  EXPECT_EQ(w.view.focusedBox, std::make_pair(2, 2));
  EXPECT_FALSE(w.view.closed);
}

TEST(ColourWindow, TwentyRowsPageByFifteenAndAFaultShowsItsPage) {
  ColourWindow w(20);
  w.presenter.open(w.view, true);
  EXPECT_EQ(w.view.rows[15].label, "15");
  EXPECT_EQ(w.view.rows[2].boxes[1], "342");
  EXPECT_FALSE(w.view.previous);
  EXPECT_TRUE(w.view.next);

  w.view.rows[1].choice = 8;  // chosen in the list, stored when the page turns
  w.presenter.nextPage();
  EXPECT_EQ(w.row(1).ColourIndex, 8);
  EXPECT_EQ(w.presenter.window().PageOffset, 15);
  EXPECT_EQ(w.view.rows[1].label, "16");
  EXPECT_TRUE(w.view.rows[5].visible);
  EXPECT_FALSE(w.view.rows[6].visible);
  EXPECT_TRUE(w.view.previous);
  EXPECT_FALSE(w.view.next);
  w.presenter.previousPage();
  EXPECT_EQ(w.presenter.window().PageOffset, 0);

  w.row(18).ExSl = 20;
  EXPECT_FALSE(w.presenter.confirm());
  EXPECT_EQ(w.presenter.window().PageOffset, 15);
  EXPECT_EQ(w.view.selected, std::make_pair(3, 3));
  EXPECT_EQ(w.row(18).ExSl, -1);
  EXPECT_EQ(w.op.messages().back().text, "Answer must be between 2.5 and 15.");
  EXPECT_EQ(w.op.beeps, 1);

  w.row(18).ExSl = 5;
  w.row(15).EmWl = 950;
  EXPECT_FALSE(w.presenter.confirm());
  EXPECT_EQ(w.presenter.window().PageOffset, 0);
  EXPECT_EQ(w.view.selected, std::make_pair(15, 2));
}

TEST(ColourWindow, EqualColoursAskOncePerPairAndNoKeepsTheWindowOpen) {
  ColourWindow w(3);
  w.presenter.open(w.view, true);
  w.view.rows[1].choice = 8;  // "Red"
  w.view.rows[3].choice = 8;
  w.op.answerNext(answer::kNo);
  EXPECT_FALSE(w.presenter.confirm());
  ASSERT_EQ(w.op.messages().size(), 1u);
  EXPECT_EQ(w.op.messages()[0].text,
            "Two wavelengths are set to be the same color.  Is this correct");
  EXPECT_EQ(w.op.messages()[0].title, "Color Declaration Problem");
  EXPECT_EQ(w.view.focusedList, 3);
  EXPECT_FALSE(w.view.closed);

  EXPECT_TRUE(w.presenter.confirm());  // Yes this time
  EXPECT_EQ(w.op.messages().size(), 2u);
  EXPECT_TRUE(w.view.closed);
  EXPECT_EQ(w.confirmed, 1);
  EXPECT_EQ(w.presenter.window().BackupPairs, w.state.Method.FixedPairs);
  EXPECT_FALSE(w.presenter.window().WavelengthMessages);
}

TEST(ColourWindow, CancelRestoresTheConfirmedTableOrTheAppendedSetsTable) {
  ColourWindow w(2);
  const FixedPairTable confirmed = w.state.Method.FixedPairs;
  w.presenter.open(w.view, true);
  w.presenter.boxChanged(1, PairField::ExWl, "600");
  w.presenter.boxChanged(2, PairField::EmSl, "");
  w.presenter.cancel();
  EXPECT_EQ(w.state.Method.FixedPairs, confirmed);
  EXPECT_TRUE(w.view.closed);

  // Edits left in the table never survive a reopening.
  w.row(1).ExWl = 700;
  FakeColourView again;
  w.presenter.open(again, true);
  EXPECT_EQ(w.row(1).ExWl, 341);

  w.presenter.window().Appending = true;
  w.presenter.window().AppendPairs = {};
  w.presenter.cancel();
  EXPECT_EQ(w.state.Method.FixedPairs, FixedPairTable{});
}

}  // namespace
}  // namespace zorvel
