#pragma once

#include <QPointer>
#include <QWidget>

class frmDocument;
class PageView;

// The full-screen view: the active document's pages over the whole screen,
// without menus or bars, still editable. Escape or F11 brings the main
// window back. It closes by itself when its document goes away.
class frmFScreen : public QWidget {
    Q_OBJECT
public:
    explicit frmFScreen(frmDocument& document);
    ~frmFScreen() override;

    frmDocument* document() const { return m_document; }
    PageView* view() const { return m_view; }

private:
    QPointer<frmDocument> m_document;
    PageView* m_view;
};
