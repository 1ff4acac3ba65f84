#pragma once

#include "merge/MergeRun.h"

#include <QPointer>
#include <QString>
#include <memory>

class ProgressReporter;
class RichTextBox;

// The records of a merge result window and the one on show: the moves
// between them, the edits made to the shown record, and the save run. The
// records stay the run's RTF strings; only the shown one is laid out, in
// the window's text box.
class MergeResultNavigator {
public:
    // Takes a run that has merged; `box` is the result window's text and
    // must outlive this object or be destroyed first (then nothing is shown).
    MergeResultNavigator(std::unique_ptr<MergeRun> run, RichTextBox& box);
    ~MergeResultNavigator();
    MergeResultNavigator(const MergeResultNavigator&) = delete;
    MergeResultNavigator& operator=(const MergeResultNavigator&) = delete;

    int recordCount() const { return int(records().size()); }
    int currentRecord() const { return m_current; }
    // Column 0 of the record on show: what the recipient box says.
    QString currentName() const;
    const std::vector<MergedRecord>& records() const { return m_run->result().records; }
    const MergeResultDocument& result() const { return m_run->result(); }

    // The shown text was edited; it goes back into its record before a move
    // or a save. Edits made while app().isCreatingDocument is up are the
    // program's own and do not count.
    void markChanged();
    bool currentRecordChanged() const { return m_changed; }

    // The moves; each keeps an edit of the record it leaves. Next past the
    // last and previous before the first say so through app().msgbox and
    // stay where they are.
    void moveFirstRecord();
    void movePreviousRecord();
    void moveNextRecord();
    void moveLastRecord();
    // Shows record `index` (0-based); out of range does nothing.
    void showRecord(int index);
    // Puts the shown text back into its record.
    void saveRTF();

    // Whether a record is left out of saving; all are saved at first.
    bool isExcluded(int index) const;
    void setExcluded(int index, bool excluded);

    // Files every record not left out into its client's vault folder below
    // `vaultRoot` (empty: the working folders'), keeping an edit of the shown
    // record first; the paths of an earlier save are reused while their files
    // exist. Returns the number of records that could not be filed; each keeps
    // its reason in `failure`. Faults of the database pass as QmError.
    int saveMergeDocument(ProgressReporter& progress);
    // Every record not left out has been filed at its saved path.
    bool allSaved() const;

private:
    void move(int target, const QString& refusal);

    std::unique_ptr<MergeRun> m_run;
    QPointer<RichTextBox> m_box;
    int m_current = -1;
    bool m_changed = false;
    std::vector<bool> m_excluded;
};
