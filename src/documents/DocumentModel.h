#pragma once

#include "context/DocumentKinds.h"

#include <functional>

// What a document carries besides its text: its kind, the kind of merge data
// it takes, how it is saved, and its page geometry in twips. The document
// window is built around one of these; the file trailer reads and writes it.
class DocumentModel {
public:
    enum DocumentType : int { Standard = 1, Template = 2, MergeResults = 3, SavedMergeResult = 4 };
    enum FileSaveType : int { RichText = 0, PlainText = 1 };

    int fileSaveType = RichText;
    int documentType = Standard;
    InformationKind InformationType = InformationKind::Companies;
    int PaperSize = 1;

    int getDocumentOrientation() const { return m_orientation; }
    int getPageHeight() const { return m_pageHeight; }
    int getPageWidth() const { return m_pageWidth; }
    int getLeftMargin() const { return m_leftMargin; }
    int getRightMargin() const { return m_rightMargin; }
    int getTopMargin() const { return m_topMargin; }
    int getBottomMargin() const { return m_bottomMargin; }

    // Each put marks the document changed; with relayout true the layout
    // hook runs at once (the window re-wraps its pages).
    void putDocumentOrientation(int value, bool relayout);
    void putPageHeight(int value, bool relayout);
    void putPageWidth(int value, bool relayout);
    void putLeftMargin(int value, bool relayout);
    void putRightMargin(int value, bool relayout);
    void putTopMargin(int value, bool relayout);
    void putBottomMargin(int value, bool relayout);

    // Page size less the margins.
    int printableWidth() const { return m_pageWidth - m_leftMargin - m_rightMargin; }
    int printableHeight() const { return m_pageHeight - m_topMargin - m_bottomMargin; }

    bool HasDocumentChanged = false;
    bool IsDocumentSaved = false;

    void setRelayoutHook(std::function<void()> hook) { m_relayout = std::move(hook); }

private:
    void put(int& field, int value, bool relayout);

    int m_orientation = 1;
    int m_pageHeight = 15840;
    int m_pageWidth = 12240;
    int m_leftMargin = 1440;
    int m_rightMargin = 1440;
    int m_topMargin = 1440;
    int m_bottomMargin = 1440;
    std::function<void()> m_relayout;
};
