#pragma once

#include "spell/modSpellHashSearch.h"

#include <QString>
#include <functional>
#include <optional>

class errorClass;
class MsgboxClass;
class QObject;
class RichTextBox;
class SpellCheckSession;
class SpellTextTarget;

// One spell check: its settings, the objects it reports through, the text
// it checks and the word list it checks against. Lives for one command.
class clsSpellCheck {
public:
    // The word list file in `AppFolder`.
    static constexpr const char* kWordListFileName = "list.db";

    clsSpellCheck() = default;
    clsSpellCheck(const clsSpellCheck&) = delete;
    clsSpellCheck& operator=(const clsSpellCheck&) = delete;

    // The error object; null runs without procedure tags.
    errorClass* errorObject() const { return m_errorClass; }
    void setErrorClass(errorClass* errors) { m_errorClass = errors; }
    // Where messages go; null uses the application's message box object.
    MsgboxClass* msgboxObject() const { return m_msgbox; }
    void setMsgboxClass(MsgboxClass* msgbox) { m_msgbox = msgbox; }
    // Owner of the dialogs (the main window); not used by the logic.
    QObject* MDIForm() const { return m_mdiForm; }
    void setMDIForm(QObject* form) { m_mdiForm = form; }

    bool FailedToInitializeFlag() const { return m_failedToInitialize; }
    void setFailedToInitializeFlag(bool on) { m_failedToInitialize = on; }
    const QString& AppName() const { return m_appName; }
    void setAppName(const QString& name) { m_appName = name; }
    // The folder of the word list file.
    const QString& AppFolder() const { return m_appFolder; }
    void setAppFolder(const QString& folder) { m_appFolder = folder; }
    // The text being checked; must outlive the check.
    SpellTextTarget* RTB() const { return m_rtb; }
    void setRTB(SpellTextTarget* rtb) { m_rtb = rtb; }

    int AccuracyPercentage() const { return m_accuracyPercentage; }
    void setAccuracyPercentage(int percent) { m_accuracyPercentage = percent; }
    bool PrecisionFilter() const { return m_precisionFilter; }
    void setPrecisionFilter(bool on) { m_precisionFilter = on; }
    // 2: highest score first.
    int RelevanceOrder() const { return m_relevanceOrder; }
    void setRelevanceOrder(int order) { m_relevanceOrder = order; }
    // 1: one-letter replacements, 2: two-letter, any other: both.
    int Tolerance() const { return m_tolerance; }
    void setTolerance(int tolerance) { m_tolerance = tolerance; }
    bool SortResultsByAccuracy() const { return m_sortResultsByAccuracy; }
    void setSortResultsByAccuracy(bool on) { m_sortResultsByAccuracy = on; }
    bool SelectErrors() const { return m_selectErrors; }
    void setSelectErrors(bool on) { m_selectErrors = on; }
    bool HighlightErrors() const { return m_highlightErrors; }
    void setHighlightErrors(bool on) { m_highlightErrors = on; }
    bool HighlightCorrections() const { return m_highlightCorrections; }
    void setHighlightCorrections(bool on) { m_highlightCorrections = on; }
    bool CommonWordExtensions() const { return m_commonWordExtensions; }
    void setCommonWordExtensions(bool on) { m_commonWordExtensions = on; }

    // The word list file: AppFolder + "list.db".
    QString databasePath() const;

    // Makes sure the word list file exists (written from the program's
    // resource when missing) and loads it. A list file that is damaged, or
    // that cannot be written where it is missing, leaves the check to the
    // built-in list and records why in wordListProblem(). Without a folder
    // to keep the list in, or without the built-in list, the user is told
    // "The spell check wizard was not able to access the spell check
    // database and needs to close.", FailedToInitializeFlag is set and the
    // answer is false.
    bool openSpellCheckDatabase();
    // Why words cannot be added to the list file this session; empty when
    // the file itself was loaded.
    const QString& wordListProblem() const { return m_wordListProblem; }
    // Writes the word list file anew from the resource. Throws QmError when
    // it cannot.
    void createSpellCheckDatabase(const QString& path);

    SpellWordDatabase& wordDatabase() { return m_words; }

    // Shows the dialog of a session that found errors; returns when the
    // user has closed it.
    using DialogRunner = std::function<void(SpellCheckSession&)>;

    // The whole check: progress shown while the word list is opened and the
    // text scanned, then the dialog when there are errors, or "There are no
    // spelling errors".
    void startSpellCheck(const DialogRunner& showDialog);
    // Ends the progress display; harmless when called again.
    void closeAnimation();

    // The message box in force: the session's own, else the application's.
    MsgboxClass* messages() const;

private:
    void openSpellCheckForm(const DialogRunner& showDialog);
    // Loads the list file, written first when missing; the reason when it
    // cannot be used.
    std::optional<QString> loadListFile(const QString& path);

    errorClass* m_errorClass = nullptr;
    MsgboxClass* m_msgbox = nullptr;
    QObject* m_mdiForm = nullptr;
    bool m_failedToInitialize = false;
    QString m_appName;
    QString m_appFolder;
    SpellTextTarget* m_rtb = nullptr;
    int m_accuracyPercentage = 70;
    bool m_precisionFilter = true;
    int m_relevanceOrder = 1;
    int m_tolerance = 3;
    bool m_sortResultsByAccuracy = true;
    bool m_selectErrors = false;
    bool m_highlightErrors = false;
    bool m_highlightCorrections = true;
    bool m_commonWordExtensions = false;

    bool m_animationOpen = false;
    QString m_wordListProblem;
    SpellWordDatabase m_words;
};

// The spell-check command on one page: checks `page` against the list in
// `templatesFolder` with the settings of the menu command (selecting each
// error as it comes up), shows the dialog through `showDialog`, and puts the
// caret back at the position it had, whatever changed before it. Does
// nothing while a document is being created.
void spellCheckPage(RichTextBox& page, const QString& templatesFolder,
                    const clsSpellCheck::DialogRunner& showDialog, QObject* owner = nullptr);

// True for the text of a usable word list: at least one line closed by
// CR LF, and no control characters in the lines (a binary or truncated file
// has them).
bool isWordListText(const QByteArray& text);
