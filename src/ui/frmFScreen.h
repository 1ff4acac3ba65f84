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

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    static bool isLeaveKey(QEvent* event);

    QPointer<frmDocument> m_document;
    PageView* m_view;
};
