#pragma once

#include "app/modMenuStatus.h"

class RichTextBox;

// The active document's state as the availability table reads it, from its
// text box: the formats of the selection, where a mixed format reads as off
// (a mixed font leaves the font bar blank, a mixed alignment the three
// buttons as they were). `changed` and the clipboard are the caller's.
ActiveDocumentState readSelectionState(const RichTextBox& box, int documentType, bool changed,
                                       bool clipboardHasText);
