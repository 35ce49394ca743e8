// SPDX-License-Identifier: MIT
// Whether the deck differs from its file, told from its undo and redo step counts.
#include <gtest/gtest.h>

#include "edithistory.h"

TEST(EditHistory, AStepMakesChangesAndUndoingItTakesThemBack) {
    EditHistory history;
    history.reset();
    EXPECT_FALSE(history.modified());
    history.update(1, 0);
    EXPECT_TRUE(history.modified());
    history.undone();
    history.update(0, 1);
    EXPECT_FALSE(history.modified());
    history.redone();
    history.update(1, 0);
    EXPECT_TRUE(history.modified());
}

TEST(EditHistory, SavingMarksTheStepTheFileHolds) {
    EditHistory history;
    history.update(2, 0);
    history.markSaved();
    EXPECT_FALSE(history.modified());
    history.undone();
    history.update(1, 1);
    EXPECT_TRUE(history.modified());
    history.redone();
    history.update(2, 0);
    EXPECT_FALSE(history.modified());
}

TEST(EditHistory, ANewStepAfterUndoingPastTheSavedOneIsNeverTheSavedState) {
    EditHistory history;
    history.update(1, 0);
    history.markSaved();
    history.undone();  // past the saved state
    history.update(0, 1);
    history.update(1, 0);  // a new step, of the same count as the saved one
    EXPECT_TRUE(history.modified());
}

TEST(EditHistory, ReadingADeckStartsClean) {
    EditHistory history;
    history.update(3, 0);
    history.reset();
    EXPECT_FALSE(history.modified());
}
