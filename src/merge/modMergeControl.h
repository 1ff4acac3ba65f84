#pragma once

#include "context/DocumentKinds.h"

#include <QDate>
#include <QList>
#include <QString>
#include <QStringList>
#include <memory>

class QStandardItemModel;
class RichTextBox;

// What the merge panel shows for the active document: which category frames
// (0 template kind, 1 recipients, 2 fields, 3 firm fields, 4 dates, 5 test,
// 6 merge), whether the record bar and its buttons are usable, whether the
// formatting tools are, and the tutorial line.
struct MergeToolBarSetup {
    enum class Tools { Standard, Company, Contact, Remitt, Appointment };
    Tools tools = Tools::Standard;
    QList<int> categories;
    // The record bar (tbrWordMerge4 and the recipient box) is on show.
    bool navigationShown = false;
    bool navigationEnabled = false;
    bool formattingEnabled = true;
    QString helpLine;
};

// What a choice in one of the panel's lists asks of the window.
struct MergeListAction {
    enum class Kind {
        Nothing,         // a heading, a blank line, or no target
        Inserted,        // a placeholder or date went in at the caret
        ChangeKind,      // make the document a template of `kind`
        InsertLetterhead // the firm's letterhead goes into the document
    };
    Kind kind = Kind::Nothing;
    InformationKind informationType = InformationKind::Companies;
};

// The merge panel without its window: the contents of the category lists,
// which tools each kind of document gets, and what a click in a list does.
// Lists 2 and 3 are the field inserter's list models (app().fieldInserter),
// so rebuilding its catalogue refills them.
class modMergeControl {
public:
    modMergeControl();
    ~modMergeControl();
    modMergeControl(const modMergeControl&) = delete;
    modMergeControl& operator=(const modMergeControl&) = delete;

    // The captions of the category buttons, by index.
    static QStringList categoryCaptions();
    // List 0: the five template kinds; entry i makes InformationType i + 1.
    static QStringList templateKindEntries();
    // List 4: `today` under each of the 14 date formats, in their order.
    static QStringList currentDateEntries(const QDate& today);
    // The tutorial line when no document is open.
    static QString noDocumentHelpLine();

    // The tools for a document of this type and information kind; a
    // document without text (hasPages false) gets no formatting tools.
    static MergeToolBarSetup setupMergeToolBar(int documentType, InformationKind informationType,
                                               bool hasPages);

    // Fills lists 0 and 4 (dates of the clock's today) and hands lists 2
    // and 3 to the field inserter, when there is one.
    void initializeMergeToolBar();
    // Refills the date list, for a panel left open past midnight.
    void refreshDates();
    // Rebuilds the field lists for a template of this kind.
    void fillFieldLists(InformationKind informationType);

    // List `list` (0, 2, 3 or 4) as the window's drop-down shows it.
    QStandardItemModel* list(int list) const;

    // A choice of entry `entry` (0-based, as the list shows it) in list
    // `list`; placeholders and dates go in at the caret of `target`. An
    // entry out of range, a heading or a missing field inserter does
    // nothing.
    MergeListAction onListClick(int list, int entry, RichTextBox* target);

private:
    std::unique_ptr<QStandardItemModel> m_kinds;
    std::unique_ptr<QStandardItemModel> m_fields;
    std::unique_ptr<QStandardItemModel> m_firm;
    std::unique_ptr<QStandardItemModel> m_dates;
};
