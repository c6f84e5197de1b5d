#include "entry/entry_undo.h"

#include "bulk_support.h"

namespace qb {
namespace {

class EntryUndoTest : public StoreTest {
  protected:
    EntryUndo undo;

    // Runs `change` between a snapshot and the comparison, as the window
    // does around a command, and keeps the step.
    void record(CEOID watched, const std::function<void()>& change, std::u16string name = u"x") {
        EntrySnapshot s = takeSnapshot(entries, watched);
        change();
        undo.push(compareWithSnapshot(entries, s, std::move(name)));
    }

    CEOID fullEntry() {
        TimeEntry e;
        e.client = u"Acme";
        e.project = u"Web";
        e.phase = u"Design";
        e.task = u"Mockups";
        e.currency = u"EUR";
        e.billTo = u"Alice";
        e.custom1 = u"c1";
        e.custom3 = u"c3";
        e.billable = true;
        e.rate = 12550;
        e.rateType = 2;
        e.duration = 175;
        systemTimeToFileTime(makeDate(2024, 5, 3, 9, 30, 1), &e.date);
        setNotes(e, 6, reinterpret_cast<const std::uint8_t*>(u"abc"));
        EXPECT_TRUE(saveEntry(entries, e));
        return e.recordOid;
    }

    std::size_t count() { return takeSnapshot(entries, 0).ids.size(); }
};

TEST_F(EntryUndoTest, ADeletedEntryComesBackWithEveryPropertyButItsId) {
    CEOID id = fullEntry();
    std::vector<CEPROPVAL> original = recordProperties(entries, id);
    ASSERT_FALSE(original.empty());
    record(
        id, [&] { entries.remove(id); }, u"Delete");
    ASSERT_EQ(count(), 0u);
    EXPECT_EQ(undo.undoName(), u"Delete");

    ASSERT_TRUE(undo.undo(entries));
    ASSERT_EQ(undo.touched().size(), 1u);
    CEOID back = undo.touched()[0];
    EXPECT_NE(back, 0u);
    std::vector<CEPROPVAL> restored = recordProperties(entries, back);
    ASSERT_EQ(restored.size(), original.size());
    for (std::size_t i = 0; i < original.size(); ++i) {
        EXPECT_EQ(restored[i].propid, original[i].propid) << i;
        EXPECT_EQ(restored[i].flags, original[i].flags) << i;
        EXPECT_EQ(restored[i].num, original[i].num) << i;
        EXPECT_EQ(restored[i].str, original[i].str) << i;
        EXPECT_EQ(restored[i].blob, original[i].blob) << i;
    }

    // Redo deletes the entry brought back, and undo brings it back again.
    ASSERT_TRUE(undo.redo(entries));
    EXPECT_EQ(count(), 0u);
    ASSERT_TRUE(undo.undo(entries));
    EXPECT_EQ(stored(undo.touched()[0]).task, u"Mockups");
}

TEST_F(EntryUndoTest, EditsAndMarkAsPaidGoBackInPlace) {
    CEOID id = fullEntry();
    record(id, [&] {
        TimeEntry e = stored(id);
        e.recordOid = id;
        e.paid = true;
        e.notes.clear();
        e.custom1.clear();
        ASSERT_TRUE(saveEntry(entries, e));
    });
    ASSERT_TRUE(undo.undo(entries));
    TimeEntry back = stored(id);
    EXPECT_FALSE(back.paid);
    EXPECT_EQ(back.notesSize(), 6) << "a cleared note comes back";
    EXPECT_EQ(back.custom1, u"c1");
    EXPECT_FALSE(undo.canUndo());
    ASSERT_TRUE(undo.redo(entries));
    EXPECT_TRUE(stored(id).paid);
    EXPECT_EQ(stored(id).notesSize(), 0);
}

TEST_F(EntryUndoTest, NewEntriesAndCopiesAreRemovedAndReadded) {
    CEOID keep = entry(u"Acme", u"T", 1);
    record(
        keep,
        [&] {
            entry(u"Acme", u"T", 2);
            entry(u"Acme", u"T", 3);
        },
        u"Copy");
    EXPECT_EQ(count(), 3u);
    ASSERT_TRUE(undo.undo(entries));
    EXPECT_EQ(count(), 1u);
    EXPECT_EQ(stored(keep).task, u"T") << "the selected entry is untouched";
    ASSERT_TRUE(undo.redo(entries));
    EXPECT_EQ(count(), 3u);
}

TEST_F(EntryUndoTest, NothingChangedKeepsNoStepAndNewStepsDropRedo) {
    CEOID id = entry(u"Acme", u"T", 1);
    record(id, [] {});
    EXPECT_FALSE(undo.canUndo()) << "a cancelled editor is no step";
    record(id, [&] { entries.remove(id); });
    ASSERT_TRUE(undo.undo(entries));
    EXPECT_TRUE(undo.canRedo());
    record(0, [&] { entry(u"B", u"T", 2); });
    EXPECT_FALSE(undo.canRedo());
}

TEST_F(EntryUndoTest, AnEntryChangedElsewhereEndsTheHistory) {
    CEOID id = entry(u"Acme", u"T", 1);
    record(id, [&] {
        TimeEntry e = stored(id);
        e.recordOid = id;
        e.paid = true;
        saveEntry(entries, e);
    });
    entries.remove(id);  // the command line deletes it meanwhile
    EXPECT_FALSE(undo.undo(entries));
    EXPECT_FALSE(undo.canUndo());
    EXPECT_FALSE(undo.canRedo());
}

}  // namespace
}  // namespace qb
