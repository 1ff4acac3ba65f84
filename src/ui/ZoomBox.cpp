#include "ui/ZoomBox.h"

#include "documents/ZoomText.h"
#include "ui/PageView.h"

#include <QLineEdit>

ZoomBox::ZoomBox(QWidget* parent) : QComboBox(parent) {
    setObjectName(QStringLiteral("cboZoom"));
    setAccessibleName(QStringLiteral("Zoom"));
    setToolTip(QStringLiteral("Zoom (Ctrl+wheel over the page)"));
    setEditable(true);
    setInsertPolicy(QComboBox::NoInsert);
    addItems(ZoomText::choices());
    setSizeAdjustPolicy(QComboBox::AdjustToContents);
    connect(this, &QComboBox::textActivated, this, &ZoomBox::apply);
    connect(lineEdit(), &QLineEdit::editingFinished, this, [this] { apply(lineEdit()->text()); });
    follow(nullptr);
}

void ZoomBox::follow(PageView* view) {
    disconnect(m_zoomConnection);
    m_view = view;
    setEnabled(view != nullptr);
    if (!view) {
        setEditText(QString());
        return;
    }
    m_zoomConnection = connect(view, &PageView::zoomChanged, this, &ZoomBox::showZoom);
    showZoom(view->zoom());
}

void ZoomBox::apply(const QString& text) {
    if (!m_view) {
        return;
    }
    const std::optional<int> percent = ZoomText::parse(text);
    if (percent) {
        m_view->setZoom(*percent);
    }
    // A refused text gives way to the zoom that stands.
    showZoom(m_view->zoom());
}

void ZoomBox::showZoom(int percent) {
    const QString text = ZoomText::format(percent);
    const int index = findText(text);
    if (index >= 0) {
        setCurrentIndex(index);
    }
    setEditText(text);
}
