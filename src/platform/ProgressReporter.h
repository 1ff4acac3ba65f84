#pragma once

#include <QString>
#include <QStringList>

// Long operations (merges, saves, tree builds) report here; the windowed
// program shows a progress dialog, tests record the steps.
class ProgressReporter {
public:
    virtual ~ProgressReporter() = default;

    virtual void begin(const QString& caption, int maximum) = 0;
    // One step done; text describes the step ("Merging " + name, ...).
    virtual void step(const QString& text) = 0;
    virtual void end() = 0;
    // True when the user asked to stop; long loops test it between records.
    virtual bool cancelled() const { return false; }
};

// Does nothing; for callers that have nobody to tell.
class NullProgress : public ProgressReporter {
public:
    void begin(const QString&, int) override {}
    void step(const QString&) override {}
    void end() override {}
};

// Records every step.
class RecordingProgress : public ProgressReporter {
public:
    void begin(const QString& caption, int maximum) override;
    void step(const QString& text) override;
    void end() override;
    bool cancelled() const override { return m_cancelAfter >= 0 && m_steps.size() >= m_cancelAfter; }

    // Reports cancelled() once this many steps have been taken.
    void cancelAfter(int steps) { m_cancelAfter = steps; }

    QString caption() const { return m_caption; }
    int maximum() const { return m_maximum; }
    const QStringList& steps() const { return m_steps; }
    bool ended() const { return m_ended; }

private:
    QString m_caption;
    int m_maximum = 0;
    QStringList m_steps;
    bool m_ended = false;
    int m_cancelAfter = -1;
};
