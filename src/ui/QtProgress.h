#pragma once

#include "platform/ProgressReporter.h"

#include <memory>

class QProgressDialog;
class QWidget;

// A modal progress dialog with Cancel for long work. Steps keep the window
// responsive (events are processed at each step), so Cancel can be pressed
// between records; the loops read cancelled().
class QtProgress : public ProgressReporter {
public:
    explicit QtProgress(QWidget* owner = nullptr);
    ~QtProgress() override;
    void setOwner(QWidget* owner) { m_owner = owner; }

    void begin(const QString& caption, int maximum) override;
    void step(const QString& text) override;
    void end() override;
    bool cancelled() const override;

private:
    QWidget* m_owner;
    std::unique_ptr<QProgressDialog> m_dialog;
    int m_done = 0;
};
