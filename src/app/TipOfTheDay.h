#pragma once

#include <QString>
#include <QStringList>

// The tips of the Tip of the Day window and which one comes next. Each
// opening of the window shows the tip after the one shown last, so a user
// meets them all in turn.
class TipOfTheDay {
public:
    static constexpr const char* SettingsSection = "QuillmerePadSettings";
    static constexpr const char* SettingsKey = "LastTipOfTheDay";
    // Whether the window opens by itself when the program starts, in the
    // same section; off in a new settings file.
    static constexpr const char* StartupKey = "ShowTipsAtStartup";

    // Tips are separated by blank lines; lines within a tip are joined with
    // a space; lines starting with "#" are notes for whoever edits the file.
    static QStringList parseTips(const QString& text);

    explicit TipOfTheDay(QStringList tips) : m_tips(std::move(tips)) {}

    int count() const { return int(m_tips.size()); }
    // The tip at any index, counted round the list; empty with no tips.
    QString tip(int index) const;
    // The index after `index`, round the list.
    int next(int index) const;

    // The first tip to show, given the stored index of the last one shown:
    // the one after it; the first tip for a missing, garbled or out of
    // range value.
    int firstIndex(const QString& lastShown) const;

private:
    QStringList m_tips;
};
