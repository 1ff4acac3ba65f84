#pragma once

#include <QComboBox>
#include <QPointer>

class PageView;

// The zoom of the active document's page view, in the status bar: a choice
// of steps or a percent typed in (50 to 200). It follows the view, which
// Ctrl+wheel zooms too; the zoom is the window's, never the file's.
class ZoomBox : public QComboBox {
    Q_OBJECT

public:
    explicit ZoomBox(QWidget* parent = nullptr);

    // The view to follow, or null (then the box is off).
    void follow(PageView* view);

private:
    void apply(const QString& text);
    void showZoom(int percent);

    QPointer<PageView> m_view;
    QMetaObject::Connection m_zoomConnection;
};
