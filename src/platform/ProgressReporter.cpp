#include "platform/ProgressReporter.h"

void RecordingProgress::begin(const QString& caption, int maximum) {
    m_caption = caption;
    m_maximum = maximum;
    m_ended = false;
}

void RecordingProgress::step(const QString& text) {
    m_steps << text;
}

void RecordingProgress::end() {
    m_ended = true;
}
