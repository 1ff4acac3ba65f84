#pragma once

#include "merge/MergeDocumentFlow.h"
#include "merge/MergeResultNavigator.h"
#include "merge/modMergeControl.h"

#include <QObject>
#include <QPointer>
#include <functional>
#include <memory>

class QListWidget;
class QMdiSubWindow;
class cbrMergeTools;
class frmDocument;
class frmMain;

// What a merge result window holds beside its text: the merged records and
// the recipient list at its side (click shows a letter, the tick keeps it
// in the save, a mark flags letters with empty placeholders). A child of
// the result's frmDocument.
class MergeResultAttachment : public QObject {
    Q_OBJECT
public:
    MergeResultAttachment(frmDocument& document, std::unique_ptr<MergeRun> run);

    static MergeResultAttachment* of(const frmDocument* document);

    MergeResultNavigator& navigator() { return m_navigator; }
    QListWidget* recipientList() const { return m_list; }
    // Shows a record and follows it in the list.
    void showRecord(int index);
    // Redraws the list's marks after a save.
    void refreshList();
    // Every record has been filed: the edits are in the files.
    void markSaved() { m_edited = false; }

Q_SIGNALS:
    // The record on show changed; `name` is its column 0.
    void recordShown(const QString& name);

private:
    void afterMove();

    frmDocument& m_document;
    MergeResultNavigator m_navigator;
    QListWidget* m_list = nullptr;
    // An edit of any record since the last save.
    bool m_edited = false;
};

// The merge panel and the merge commands of the main window: the panel
// follows the active document, its lists put placeholders in at the caret,
// Test and Merge run the merge steps, and the result windows move, edit
// and save their records. Owned by the main window.
class MergeWindowCommands : public QObject {
    Q_OBJECT
public:
    explicit MergeWindowCommands(frmMain& main);
    ~MergeWindowCommands() override;

    cbrMergeTools* panel() const { return m_panel; }
    modMergeControl& control() { return m_control; }

    // Lets the user pick a template's recipients (the recipient dialog, the
    // search dialogs), writing them into its IDList or SQLFilter; false when
    // nothing was chosen. Without one, the template's IDList or SQLFilter is
    // taken as it stands.
    using RecipientDialog = std::function<bool(frmDocument& document)>;
    void setRecipientDialog(RecipientDialog dialog);
    // How a result window's letters are printed (its Print button and Merge
    // to Printer); without one both stay off with a note.
    using ResultPrinter = std::function<void(frmDocument& result, MergeResultNavigator& letters)>;
    void setResultPrinter(ResultPrinter printer);

    // The panel for the active document (none: the no-document line).
    void setupMergeToolBar();
    // Buttons 5 and 6 on the active template.
    void testMergeDocument();
    void mergeButton();
    // Where the recipients of a company or contact merge come from: the
    // merge button always lets the user tick them (the template's list ticked
    // already); a host's merge takes the list it gave and asks only when it
    // gave none.
    enum class Recipients { Dialog, GivenFirst };
    // Button 6 on a given template: the test, the question on a fault, the
    // merge and its result window (returned; null when none was made).
    frmDocument* mergeDocument(frmDocument& document, Recipients from = Recipients::Dialog);
    // Picks the recipients, merges and opens the result window; null when
    // there is nothing to show (the user has been told why).
    frmDocument* createNewMergeDocument(frmDocument& source, Recipients from = Recipients::Dialog);
    // Files every ticked record of a result window into the vault under the
    // progress dialog; false when some could not be filed (the user has been
    // told which) or nothing was there to save.
    bool saveMergeDoc(frmDocument& result);
    // The same, for the document routines (File > Save, the closing
    // question), which hold the busy flag themselves.
    bool fileLetters(frmDocument& result);
    // Makes a document a template of this kind.
    void changeTemplateInformation(frmDocument& document, InformationKind kind);
    // A record bar button by its key, on the active result window.
    void navigate(const QString& key);

    frmDocument* activeDocument() const;
    // The View command of the tutorial line.
    void toggleTutorial();

private:
    static const struct ViewSetting* tutorialSetting();
    void showTutorial(bool shown);
    // The PDF menu of a result window: the letter on show where the user
    // says, or one beside each filed letter (filing first what is not).
    void saveLetterAsPdf(frmDocument& result, MergeResultNavigator& letters);
    void saveAllAsPdf(frmDocument& result, MergeResultNavigator& letters);
    void onListChosen(int list, int entry);
    void onCategoryClicked(int index);
    MergeTemplateSource sourceOf(frmDocument& document) const;
    bool chooseInto(frmDocument& document);
    template <typename Work> void busy(Work&& work);

    frmMain& m_main;
    modMergeControl m_control;
    cbrMergeTools* m_panel = nullptr;
    RecipientDialog m_dialog;
    ResultPrinter m_printer;
    // The kind the field lists were last filled for.
    int m_listedKind = -1;
    quint64 m_listedGeneration = 0;
    bool m_tutorialRead = false;
};

// Builds the merge panel into the main window and gives the merge commands
// their routines.
void installMergeCommands(frmMain& main);
