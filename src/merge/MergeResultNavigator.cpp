#include "merge/MergeResultNavigator.h"

#include "context/AppContext.h"
#include "platform/MsgboxClass.h"
#include "platform/ProgressReporter.h"
#include "platform/errorClass.h"
#include "platform/fileControl.h"
#include "platform/richtext/RichTextBox.h"

namespace {

// Raises the busy flag for the length of a text swap, so that the box's
// change events do not count as the user's edits; what stood is put back.
class BusyFlag {
public:
    BusyFlag() : m_was(app().isCreatingDocument) { app().isCreatingDocument = true; }
    ~BusyFlag() { app().isCreatingDocument = m_was; }
    BusyFlag(const BusyFlag&) = delete;
    BusyFlag& operator=(const BusyFlag&) = delete;

private:
    bool m_was;
};

} // namespace

MergeResultNavigator::MergeResultNavigator(std::unique_ptr<MergeRun> run, RichTextBox& box)
    : m_run(std::move(run)), m_box(&box), m_excluded(m_run->result().records.size(), false) {}

MergeResultNavigator::~MergeResultNavigator() = default;

QString MergeResultNavigator::currentName() const {
    if (m_current < 0 || m_current >= recordCount()) {
        return QString();
    }
    return records()[size_t(m_current)].name;
}

void MergeResultNavigator::markChanged() {
    if (!app().isCreatingDocument && m_current >= 0) {
        m_changed = true;
    }
}

void MergeResultNavigator::saveRTF() {
    if (!m_box || m_current < 0 || m_current >= recordCount()) {
        return;
    }
    m_run->result().records[size_t(m_current)].rtf = m_box->TextRTF();
    m_changed = false;
}

void MergeResultNavigator::showRecord(int index) {
    ProcedureScope scope(app().errors, "QuillmerePad.exe-frmDocument-showRecord");
    if (index < 0 || index >= recordCount() || !m_box) {
        return;
    }
    BusyFlag busy;
    if (m_changed) {
        saveRTF();
    }
    m_current = index;
    const MergedRecord& record = records()[size_t(index)];
    // A record whose merge failed has no letter; its reason stands instead.
    if (record.mergeFailed) {
        m_box->setText(record.failure);
    } else {
        m_box->setTextRTF(record.rtf);
    }
    m_box->setSelStart(0);
    m_changed = false;
}

void MergeResultNavigator::move(int target, const QString& refusal) {
    if (recordCount() == 0) {
        return;
    }
    if (target < 0 || target >= recordCount()) {
        if (app().msgbox) {
            app().msgbox->showMessage(refusal);
        }
        return;
    }
    showRecord(target);
}

void MergeResultNavigator::moveFirstRecord() {
    move(0, QString());
}

void MergeResultNavigator::moveLastRecord() {
    move(recordCount() - 1, QString());
}

void MergeResultNavigator::moveNextRecord() {
    move(m_current + 1, QStringLiteral("You have already reached the last record."));
}

void MergeResultNavigator::movePreviousRecord() {
    move(m_current - 1, QStringLiteral("You have already reached the first record."));
}

bool MergeResultNavigator::isExcluded(int index) const {
    return index >= 0 && index < int(m_excluded.size()) && m_excluded[size_t(index)];
}

void MergeResultNavigator::setExcluded(int index, bool excluded) {
    if (index >= 0 && index < int(m_excluded.size())) {
        m_excluded[size_t(index)] = excluded;
    }
}

int MergeResultNavigator::saveMergeDocument(ProgressReporter& progress) {
    ProcedureScope scope(app().errors, "QuillmerePad.exe-frmDocument-saveMergeDoc");
    if (m_changed) {
        saveRTF();
    }
    AppContext& ctx = app();
    if (!ctx.fieldInserter || !ctx.database) {
        throw QmError(QmError::Internal, QStringLiteral("The merge fields are not available."));
    }
    // Records left out step aside for the run and come back in their places.
    std::vector<MergedRecord>& all = m_run->result().records;
    std::vector<MergedRecord> left;
    std::vector<size_t> kept;
    std::vector<MergedRecord> saving;
    for (size_t i = 0; i < all.size(); ++i) {
        if (m_excluded[i]) {
            left.push_back(std::move(all[i]));
        } else {
            kept.push_back(i);
            saving.push_back(std::move(all[i]));
        }
    }
    all = std::move(saving);
    auto restore = [&] {
        std::vector<MergedRecord> back(kept.size() + left.size());
        size_t k = 0;
        size_t l = 0;
        for (size_t i = 0; i < back.size(); ++i) {
            if (k < kept.size() && kept[k] == i) {
                back[i] = std::move(all[k++]);
            } else {
                back[i] = std::move(left[l++]);
            }
        }
        all = std::move(back);
    };
    int failures = 0;
    try {
        failures = m_run->file(*ctx.fieldInserter, *ctx.database, progress);
    } catch (...) {
        restore();
        throw;
    }
    restore();
    return failures;
}

bool MergeResultNavigator::allSaved() const {
    for (size_t i = 0; i < records().size(); ++i) {
        const MergedRecord& record = records()[i];
        if (!m_excluded[i] &&
            (record.savedPath.isEmpty() || !fileControl::FileExists(record.savedPath))) {
            return false;
        }
    }
    return true;
}
