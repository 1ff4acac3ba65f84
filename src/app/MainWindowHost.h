#pragma once

#include "platform/errorClass.h"

#include <QString>

class MsgboxClass;

// Where and how the main window stands, for the settings file.
struct WindowPlacement {
    enum class State { Normal, Minimized, Maximized };
    State state = State::Normal;
    // In twips, as the settings file keeps them.
    int top = 0;
    int left = 0;
    int width = 0;
    int height = 0;
};

// What start-up and shut-down need of the main window. The windowed program
// implements it with the real window; tests and headless runs with a
// scripted one. The core never sees a widget.
class MainWindowHost {
public:
    virtual ~MainWindowHost() = default;

    // Stand-alone only: the splash window with "Version: " + version.
    virtual void showSplash(const QString& versionText) = 0;
    // Loads the window (asking for its handle does that).
    virtual void load() = 0;
    // The last start-up step: applies the settings, opens the first
    // document in stand-alone mode, hides the splash.
    virtual void MDIFormInitialize() = 0;
    // The message boxes over this window.
    virtual MsgboxClass& messageBoxes() = 0;
    // The error dialog: returns 1 go on, 2 leave, 3 end the program.
    virtual errorClass::Prompt errorPrompt() = 0;
    virtual WindowPlacement placement() const = 0;
    // Unloads every window but the main one, then the main one itself.
    virtual void unloadOtherWindows() = 0;
    virtual void closeMainWindow() = 0;
    // Closes the documents, each asking to save its changes; false when
    // the user kept one open, which calls the exit off.
    virtual bool unloadDocuments() { return true; }
};
