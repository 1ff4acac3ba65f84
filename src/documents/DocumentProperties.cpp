#include "documents/DocumentProperties.h"

namespace {

constexpr double kTwipsPerInch = 1440.0;

QString inches(int twips) {
    return QString::number(twips / kTwipsPerInch, 'f', 2);
}

} // namespace

int countWords(const QString& text) {
    int words = 0;
    bool inWord = false;
    bool hasLetter = false;
    const auto endWord = [&] {
        if (inWord && hasLetter) {
            ++words;
        }
        inWord = false;
        hasLetter = false;
    };
    for (const QChar ch : text) {
        // The placeholder marks separate words as spaces do.
        if (ch.isSpace() || ch == QChar(0x00AB) || ch == QChar(0x00BB)) {
            endWord();
            continue;
        }
        inWord = true;
        hasLetter = hasLetter || ch.isLetterOrNumber();
    }
    endWord();
    return words;
}

int countPlaceholders(const QString& text) {
    const QChar open(0x00AB);
    const QChar close(0x00BB);
    int count = 0;
    qsizetype from = 0;
    while (true) {
        const qsizetype start = text.indexOf(open, from);
        if (start < 0) {
            break;
        }
        const qsizetype end = text.indexOf(close, start + 1);
        if (end < 0) {
            break;
        }
        // A second « before the » starts the placeholder afresh.
        const qsizetype reopened = text.lastIndexOf(open, end);
        if (end - reopened > 1 && !text.mid(reopened + 1, end - reopened - 1).trimmed().isEmpty()) {
            ++count;
        }
        from = end + 1;
    }
    return count;
}

QString documentTypeName(int documentType) {
    switch (documentType) {
    case DocumentModel::Standard:
        return QStringLiteral("Standard Document");
    case DocumentModel::Template:
        return QStringLiteral("Merge Template");
    case DocumentModel::MergeResults:
        return QStringLiteral("Merge Results");
    case DocumentModel::SavedMergeResult:
        return QStringLiteral("Saved Merge Results (locked)");
    default:
        return QStringLiteral("Unknown (%1)").arg(documentType);
    }
}

QString informationTypeName(int documentType, InformationKind kind) {
    if (documentType == DocumentModel::Standard) {
        return QStringLiteral("None");
    }
    switch (kind) {
    case InformationKind::Companies:
        return QStringLiteral("Company with default contact");
    case InformationKind::CompaniesAndContacts:
        return QStringLiteral("Company with specified contacts");
    case InformationKind::Contacts:
        return QStringLiteral("Contact");
    case InformationKind::Tasks:
        return QStringLiteral("Task of the remittance calendar");
    case InformationKind::Appointments:
        return QStringLiteral("Appointment");
    case InformationKind::Dockets:
        return QStringLiteral("Docket");
    case InformationKind::WorkListTasks:
        return QStringLiteral("Task");
    default:
        return QStringLiteral("Unknown (%1)").arg(toInt(kind));
    }
}

QString pageSetupText(const DocumentModel& model) {
    const QString orientation = model.getDocumentOrientation() == 2 ? QStringLiteral("Landscape")
                                                                    : QStringLiteral("Portrait");
    return QStringLiteral("%1, %2 x %3 in; margins %4 left, %5 right, %6 top, %7 bottom")
        .arg(orientation, inches(model.getPageWidth()), inches(model.getPageHeight()),
             inches(model.getLeftMargin()), inches(model.getRightMargin()),
             inches(model.getTopMargin()), inches(model.getBottomMargin()));
}

std::vector<DocumentPropertyRow> documentPropertyRows(const DocumentModel& model,
                                                      const QString& fileName,
                                                      const QString& plainText, int pages) {
    const auto row = [](const char* name, const char* caption, const QString& value) {
        return DocumentPropertyRow{QLatin1String(name), QLatin1String(caption), value};
    };
    return {
        row("lblFile", "File:", fileName.isEmpty() ? QStringLiteral("(not saved yet)") : fileName),
        row("lblDocumentType", "Document type:", documentTypeName(model.documentType)),
        row("lblInformationType",
            "Information type:", informationTypeName(model.documentType, model.InformationType)),
        row("lblSavedAs", "Saved as:",
            model.fileSaveType == DocumentModel::PlainText ? QStringLiteral("Plain text")
                                                           : QStringLiteral("Rich text")),
        row("lblPageSetup", "Page setup:", pageSetupText(model)),
        row("lblPages", "Pages:", QString::number(pages)),
        row("lblWords", "Words:", QString::number(countWords(plainText))),
        row("lblPlaceholders", "Placeholders:", QString::number(countPlaceholders(plainText))),
    };
}
