#pragma once

#include <QString>

class PageLayout;
class RichTextBox;

// Where the Go To dialog puts the caret. Start, End and Line count within
// the sheet that holds the caret, as the status bar's page does; Page names
// a sheet of the document.
enum class GoToWhat { Start, Line, End, Page };

struct GoToAnswer {
    int selStart = -1; // Text position for the caret; -1 when refused
    QString message;   // why it was refused, empty otherwise
};

// `number` is what the user typed for Line and Page (ignored otherwise).
// A line that is not a number, below 1 or beyond the sheet's last line gives
// "Invalid line number!"; a page outside 1 to totalPages "Invalid page
// number!". Lays the document out up to the sheet asked for.
GoToAnswer goToTarget(const RichTextBox& box, const PageLayout& layout, GoToWhat what,
                      const QString& number);
