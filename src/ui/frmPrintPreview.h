#pragma once

#include "print/SheetSource.h"

#include <QDialog>
#include <functional>
#include <memory>

class QComboBox;
class QLabel;
class QPushButton;
class QSpinBox;
class PreviewCanvas;

// Print preview: one sheet at a time as it will print, drawn on demand by
// the sheet paint routine, with page navigation and zoom. `print` runs when
// the Print button is used (the window closes first).
class frmPrintPreview : public QDialog {
    Q_OBJECT

public:
    frmPrintPreview(std::unique_ptr<SheetSource> source, const QString& caption,
                    std::function<void()> print, QWidget* parent = nullptr);
    ~frmPrintPreview() override;

    const PreviewNavigator& navigator() const { return m_navigator; }
    // Pixels per twip of the sheet as now shown.
    double currentScale() const;

protected:
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void showSheet();
    void applyZoom();

    std::unique_ptr<SheetSource> m_source;
    PreviewNavigator m_navigator;
    PreviewCanvas* m_canvas = nullptr;
    QWidget* m_viewport = nullptr;
    QPushButton* m_first = nullptr;
    QPushButton* m_previous = nullptr;
    QPushButton* m_next = nullptr;
    QPushButton* m_last = nullptr;
    QSpinBox* m_page = nullptr;
    QLabel* m_count = nullptr;
    QComboBox* m_zoom = nullptr;
    std::function<void()> m_print;
};
