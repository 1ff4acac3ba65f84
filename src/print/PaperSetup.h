#pragma once

#include <QRect>
#include <QSize>
#include <QString>
#include <array>
#include <optional>

class DocumentModel;

// What the page setup dialog decides, without the dialog: the paper list,
// the size and margin boxes as text, the orientation, the bounds the boxes
// are checked against and the little drawing of sheet, shadow and margins.
// The window shows this state and hands each event to one of the routines
// below. Lengths are twips; the boxes show inches.
class PaperSetup {
public:
    enum Margin { Left = 0, Right = 1, Top = 2, Bottom = 3 };
    enum PageBox { Width = 0, Height = 1 };
    // The drawing's scale: twips of paper per twip of the picture.
    static constexpr double DrawDivisor = 8.41;
    // Room beside the sheet for its shadow, in twips of the picture.
    static constexpr int ShadowRoom = 60;

    bool ClickedOK = false;
    int PaperSize = 1;
    int paperWidth = 12240;
    int paperHeight = 15840;
    int Orientation = 1;
    int MarginLeft = 1440;
    int MarginRight = 1440;
    int MarginTop = 1440;
    int MarginBottom = 1440;
    int MarginMinLeft = 0;
    int MarginMinRight = 0;
    int MarginMinTop = 0;
    int MarginMinBottom = 0;

    // The controls as the user sees them.
    std::array<QString, 4> txtMargins;
    std::array<QString, 2> txtPageSize;
    int paperListIndex = -1; // -1: no entry selected
    int orientationOption = 1;
    QRect shpShadow;
    QRect shpPage;
    QRect shpMargins;

    // A fault the validation found: the box to focus and the message.
    struct Fault {
        int box;
        QString message;
    };

    // The dialog's properties from a document, as the Page Setup command
    // copies them in (orientation 1 when the document's is 1, else 2).
    static PaperSetup fromDocument(const DocumentModel& document);
    // The OK branch of the command: margins, orientation, paper code and
    // size written back, each without laying out, and the document marked
    // changed. The caller lays the document out once afterwards.
    void applyTo(DocumentModel& document) const;

    // Fills the list position from PaperSize and the boxes from the
    // properties, and draws. `picture` is the drawing's inner size.
    void setupForm(QSize picture);
    // The user chose a list entry.
    void cboPaperSize_Click(int index);
    // The user chose option 1 (portrait) or 2 (landscape).
    void optOrientation_Click(int option);
    // The numeric-entry filter: digits, the decimal point and editing keys
    // pass; anything else is blanked out.
    static bool keyPasses(QChar key);
    // A key typed into a page size box that passed the filter: the list
    // moves to "User Defined".
    void pageSizeKeyTyped();
    // Checks the four margin boxes, left to right to bottom, and stops at
    // the first fault; when all pass, the margins take the boxes' values.
    std::optional<Fault> txtMargins_Validate();
    // Checks width, then height (0 to 99 inches); when both pass, the paper
    // takes them and the boxes and drawing are filled again.
    std::optional<Fault> txtPageSize_Validate();
    // The user typed into a margin box or a page size box: that group is
    // checked again when the dialog is accepted.
    void boxEdited(bool marginBox);
    // Accepts the dialog: edited margin boxes are validated first, then
    // edited page size boxes (their fault's box is 4 + the size box).
    std::optional<Fault> ok();

    // The value a box's text stands for, read as far as it is a number
    // (blank or no number is 0).
    static double boxValue(const QString& text);
    // Twips as a box shows them: inches rounded to 2 decimals.
    static QString inches(double twips);

private:
    void getPaperDimensions();
    void populateValues();
    void drawPage();

    QSize m_picture{2400, 2400};
    bool m_marginsEdited = false;
    bool m_sizeEdited = false;
    bool m_populating = false;
};
