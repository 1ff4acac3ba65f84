#pragma once

#include <QPointer>
#include <QWidget>
#include <optional>
#include <utility>

class PageView;

// The ruler above the document area: inches counted from the left margin
// of the active document's sheet, the margins shaded, the paragraph's
// indents and the caret's place (the insert marker) marked. It lines itself
// up with the sheet on screen as the view scrolls, zooms or moves; with no
// document it is blank.
class Ruler : public QWidget {
    Q_OBJECT

public:
    explicit Ruler(QWidget* parent = nullptr);

    // The view to follow, or null. The ruler watches it; nothing is owned.
    void follow(PageView* view);
    PageView* followed() const { return m_view; }
    // The sheet's left edge in the ruler's coordinates and the screen pixels
    // per twip; nothing without a view.
    std::optional<std::pair<double, double>> sheetOrigin() const;

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QPointer<PageView> m_view;
    QList<QMetaObject::Connection> m_connections;
};
