#pragma once

class frmMain;
class frmDocument;

// Gives the Insert menu's commands their routines on the main window.
void installInsertCommands(frmMain& window);

// The active document window, or null after telling the user "There are no
// open documents.".
frmDocument* activeDocument(frmMain& window);
