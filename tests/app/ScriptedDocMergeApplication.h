#pragma once

#include "app/clsDocMerge.h"
#include "platform/FieldTable.h"
#include "platform/errorClass.h"

#include <QStringList>
#include <optional>

// The application side of the automation object for tests: a record of
// every call, and one document whose list and filter the tests look at.
class ScriptedDocMergeApplication : public DocMergeApplication {
public:
    struct Document {
        FieldTable IDList{2};
        QString SQLFilter;
        int informationType = 1;
        int documentType = 1;
    };

    void setBusy(bool busy) override { calls << (busy ? "busy" : "idle"); }
    void startApplication(clsDocMerge& object) override {
        calls << QStringLiteral("start:%1:%2:%3")
                     .arg(object.AppWorkingDataFolder())
                     .arg(object.currentProvince())
                     .arg(object.userID());
    }
    void doEventsIfInputPending() override { calls << "doEvents"; }
    void createNewStandardDocument() override {
        calls << "newDocument";
        document.emplace();
    }
    void openExistingDocument(const QString& filePath) override {
        calls << "open:" + filePath;
        // A template saved as a company merge with its recipients.
        document.emplace(savedTemplate);
    }
    bool hasActiveDocument() const override { return document.has_value(); }
    QString SQLFilter() const override { return document->SQLFilter; }
    void setSQLFilter(const QString& filter) override { document->SQLFilter = filter; }
    void connectToRemittRST() override { calls << "connectToRemittRST"; }
    FieldTable& IDList() override { return document->IDList; }
    void changeTemplateInformation(int mergeType) override {
        calls << QStringLiteral("changeTemplateInformation:%1").arg(mergeType);
        document->documentType = 2;
        document->informationType = mergeType;
    }
    void performMerge() override {
        calls << "performMerge";
        if (mergeFault) {
            throw QmError(3001, *mergeFault);
        }
    }
    void bringToForeground() override { calls << "foreground"; }
    void exitCurrentProgram() override { calls << "exit"; }

    QStringList calls;
    std::optional<Document> document;
    Document savedTemplate;
    std::optional<QString> mergeFault;
};
