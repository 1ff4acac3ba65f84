#pragma once

#include "documents/PageLayout.h"
#include "print/PrintTarget.h"

#include <QStringList>
#include <vector>

// A print target that keeps, for each sheet fed, the first words of every
// layout page painted on it; a failure can be set for the n-th new sheet.
class RecordingTarget : public PrintTarget {
public:
    bool begin(const DocumentModel&) override {
        began = true;
        sheets.assign(1, {});
        return !refuseBegin;
    }
    void paintSheet(const PageLayout& layout, int page) override {
        sheets.back() << layout.sheetText(page).section(QLatin1Char('\n'), 0, 0).trimmed();
    }
    bool newPage() override {
        if (failOnNewPage > 0 && int(sheets.size()) >= failOnNewPage) {
            return false;
        }
        sheets.emplace_back();
        return true;
    }
    bool end() override {
        ended = true;
        return true;
    }
    void abort() override { aborted = true; }
    QString error() const override { return QStringLiteral("The printer went away."); }

    bool refuseBegin = false;
    int failOnNewPage = 0; // fail when this many sheets exist
    bool began = false;
    bool ended = false;
    bool aborted = false;
    std::vector<QStringList> sheets;
};
