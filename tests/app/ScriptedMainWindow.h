#pragma once

#include "app/MainWindowHost.h"
#include "platform/MsgboxClass.h"

#include <QStringList>

// A main window for tests: records what start-up and shut-down asked of it.
class ScriptedMainWindow : public MainWindowHost {
public:
    void showSplash(const QString& versionText) override { calls << "splash:" + versionText; }
    void load() override { calls << "load"; }
    void MDIFormInitialize() override { calls << "initialize"; }
    MsgboxClass& messageBoxes() override { return msgbox; }
    errorClass::Prompt errorPrompt() override {
        return [this](const ErrorReport& report) {
            calls << "error:" + report.description;
            return errorAnswer;
        };
    }
    WindowPlacement placement() const override { return where; }
    void unloadOtherWindows() override { calls << "unloadOthers"; }
    void closeMainWindow() override { calls << "close"; }
    bool unloadDocuments() override {
        calls << "unloadDocuments";
        return !keepDocuments;
    }

    QStringList calls;
    ScriptedMsgbox msgbox;
    WindowPlacement where;
    int errorAnswer = 2;
    // A document whose question was answered with Cancel.
    bool keepDocuments = false;
};
