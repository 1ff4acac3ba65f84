#pragma once

class frmMain;
class frmDocument;

// Gives the spell-check command its routine on the main window.
void installSpellCommands(frmMain& window);

// The spell check of a document window: the whole text against the word
// list of the templates folder, through frmSpellCheck, with each word shown
// scrolled into view.
void spellCheckDocument(frmDocument& document, frmMain& window);
