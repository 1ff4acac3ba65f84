#pragma once

#include "documents/DocumentModel.h"
#include "documents/PageLayout.h"
#include "platform/FieldTable.h"
#include "platform/richtext/RichTextBox.h"
#include "search/clsSearchAppointments.h"
#include "search/clsSearchTasks.h"

#include <QString>
#include <QWidget>

class PageView;

// A document window: one RichTextBox, its pagination and the page view that
// shows it, with the fields the rest of the program reads and sets. It lives
// in a QMdiSubWindow of the main window.
class frmDocument : public QWidget {
    Q_OBJECT

public:
    explicit frmDocument(QWidget* parent = nullptr);
    ~frmDocument() override;

    // The document's text: every command of the main window works on it.
    RichTextBox& rtfText() { return m_box; }
    PageView* pageView() const { return m_view; }
    PageLayout& pageLayout() { return m_layout; }
    DocumentModel& model() { return m_model; }

    // 4 (a locked merge result) makes the text read-only.
    int documentType() const { return m_model.documentType; }
    void setDocumentType(int type);
    InformationKind InformationType() const { return m_model.InformationType; }
    void setInformationType(InformationKind kind) { m_model.InformationType = kind; }
    int fileSaveType() const { return m_model.fileSaveType; }
    void setFileSaveType(int type) { m_model.fileSaveType = type; }

    // Pages of the whole document, and the page of the caret.
    int totalPages() const { return m_layout.totalPages(); }
    int currentPage() const { return m_layout.currentPage(); }

    // 1 page display, 2 continuous display; changePageDisplayType applies it.
    int currentPageDisplayType = PageLayout::PageDisplay;

    int getPageWidth() const { return m_model.getPageWidth(); }
    int getPageHeight() const { return m_model.getPageHeight(); }
    int getLeftMargin() const { return m_model.getLeftMargin(); }
    int getRightMargin() const { return m_model.getRightMargin(); }
    int getTopMargin() const { return m_model.getTopMargin(); }
    int getBottomMargin() const { return m_model.getBottomMargin(); }
    int getDocumentOrientation() const { return m_model.getDocumentOrientation(); }
    // Each put marks the document changed; rewrap true lays it out at once.
    void putPageWidth(int value, bool rewrap) { m_model.putPageWidth(value, rewrap); }
    void putPageHeight(int value, bool rewrap) { m_model.putPageHeight(value, rewrap); }
    void putLeftMargin(int value, bool rewrap) { m_model.putLeftMargin(value, rewrap); }
    void putRightMargin(int value, bool rewrap) { m_model.putRightMargin(value, rewrap); }
    void putTopMargin(int value, bool rewrap) { m_model.putTopMargin(value, rewrap); }
    void putBottomMargin(int value, bool rewrap) { m_model.putBottomMargin(value, rewrap); }
    void putDocumentOrientation(int value, bool rewrap) {
        m_model.putDocumentOrientation(value, rewrap);
    }

    bool IsDocumentSaved() const { return m_model.IsDocumentSaved; }
    void setIsDocumentSaved(bool saved) { m_model.IsDocumentSaved = saved; }
    bool HasDocumentChanged() const { return m_model.HasDocumentChanged; }
    void setHasDocumentChanged(bool changed) { m_model.HasDocumentChanged = changed; }

    QString DocumentCaption;
    QString DocumentFileName;
    // Recipients of a merge: company and contact IDs (kinds 1 to 3), or
    // schedule or appointment IDs in column 1 (kinds 4 and 5).
    FieldTable IDList{2};
    // The record-set filter of a task or appointment merge, with the search
    // whose SELECT it narrows; the search dialogs keep the user's last
    // criteria here.
    QString SQLFilter;
    clsSearchTasks taskSearch;
    clsSearchAppointments appointmentSearch;

    // Lays the window out for the model's page geometry, its lines bound to
    // the page again (view mode 2); resetScroll brings the view back to the
    // top. The pagination follows the text by itself,
    // so rewrap only matters to callers that changed the page.
    void setupDocument(bool resetScroll, bool rewrap);
    // Applies currentPageDisplayType.
    void changePageDisplayType();
    // Brings the caret into view.
    void adjustDisplayForCursorPosition();
    // The template takes another kind of merge data: see
    // MergeDocumentFlow::changeTemplateInformation, which this runs with
    // isCreatingDocument set, then shows the new caption on the window's
    // frame. False, and nothing changed, for a merge result.
    bool changeTemplateInformation(InformationKind kind);
    // Empties the document: one page, caret on it.
    void clearRTFText();
    // The whole document as RTF, for printing and saving.
    QString mergeRTBText() const { return m_box.TextRTF(); }
    // The word-wrap toggle: 0 no wrap, 1 wrap at the window, 2 as printed.
    void SetViewMode(int mode);
    // Puts a panel at the left of the pages (a merge result's recipients);
    // the window takes it over.
    void setSidePanel(QWidget* panel);
    // Sends an edit message (RichTextBox::WM_CUT and its kin) to the text,
    // unless the text has the focus and Control is held: then the text box
    // has acted on the shortcut itself, and the menu's command would do it
    // a second time. Returns 0, or -1 for an unknown message.
    int performEdit(int message);

    // Loads text or RTF with the layout switched off, then paginates.
    void loadText(const QString& text);
    // Opens a document file into the window; see PageLayout::loadFile.
    void loadFile(const QString& path);

Q_SIGNALS:
    // The caret's page or the page count changed: "Page X of Y".
    void pageStatusChanged(int currentPage, int totalPages);
    void contextMenuWanted(const QPoint& globalPosition);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void rtfTextKeyUp(int key, Qt::KeyboardModifiers modifiers, const QString& typed);
    void reportPages();

    DocumentModel m_model;
    RichTextBox m_box;
    PageLayout m_layout;
    PageView* m_view = nullptr;
    int m_lastPage = 0;
    int m_lastTotal = 0;
    bool m_controlKey = false; // Control is held down in the text
};
