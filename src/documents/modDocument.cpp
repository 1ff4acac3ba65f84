#include "documents/modDocument.h"

#include "context/AppContext.h"
#include "documents/DocumentModel.h"
#include "files/clsINIFileCompanion.h"
#include "platform/errorClass.h"
#include "platform/fileControl.h"
#include "platform/text/stringControl.h"

#include <QtMath>
#include <array>
#include <climits>

namespace {

const QString kModule = QStringLiteral("QuillmerePad.exe-modDocument-");

// The labels of the trailer, in the order of its lines. The first entry is
// an old file-name label that is neither written nor read; the reader's
// loop starts behind it.
const std::array<const char*, 12> kLabels = {
    "{\\QMDocumentFileName \\val", "{\\QMFileSaveType \\val",     "{\\QMDocumentType \\val",
    "{\\QMInformationType \\val",  "{\\QMPaperOrientation \\val", "{\\QMPaperSize \\val",
    "{\\QMPageHeight \\val",       "{\\QMPageWidth \\val",        "{\\QMLeftMargin \\val",
    "{\\QMRightMargin \\val",      "{\\QMTopMargin \\val",        "{\\QMBottomMargin \\val",
};

QString trailerValue(int value) {
    if (value < SHRT_MIN || value > SHRT_MAX) {
        throw QmError(QmError::Overflow, QStringLiteral("Overflow"));
    }
    return QString::number(value);
}

// The conversion of a stored value: blanks around it allowed, a fraction
// rounded half to even, 16 bits at most.
int toInteger16(const QString& text) {
    bool ok = false;
    const double number = text.trimmed().toDouble(&ok);
    if (!ok) {
        throw QmError(QmError::TypeMismatch, QStringLiteral("Type mismatch"));
    }
    const double rounded = std::nearbyint(number);
    if (rounded < SHRT_MIN || rounded > SHRT_MAX) {
        throw QmError(QmError::Overflow, QStringLiteral("Overflow"));
    }
    return static_cast<int>(rounded);
}

void store(DocumentModel& document, int position, int value) {
    switch (position) {
    case 1:
        document.fileSaveType = value;
        break;
    case 2:
        document.documentType = value;
        break;
    case 3:
        document.InformationType = informationKindFromInt(value);
        break;
    case 4:
        document.putDocumentOrientation(value, false);
        break;
    case 5:
        document.PaperSize = value;
        break;
    case 6:
        document.putPageHeight(value, false);
        break;
    case 7:
        document.putPageWidth(value, false);
        break;
    case 8:
        document.putLeftMargin(value, false);
        break;
    case 9:
        document.putRightMargin(value, false);
        break;
    case 10:
        document.putTopMargin(value, false);
        break;
    case 11:
        document.putBottomMargin(value, false);
        break;
    default:
        break;
    }
}

enum class Next { GoOn, Leave };

// The procedure's handler: the error object reports and asks; without one
// the fault goes to the caller.
Next handleFault(const QmError& fault) {
    errorClass* errors = app().errors;
    if (!errors) {
        throw fault;
    }
    const int action = errors->handle(fault);
    return action == errorClass::GoOn ? Next::GoOn : Next::Leave;
}

QString readAllText(const QString& path) {
    QString reason;
    const auto bytes = fileControl::readWholeFile(path, &reason);
    if (!bytes) {
        throw QmError(QmError::PathFileAccessError,
                      QStringLiteral("Path/File access error: %1").arg(reason));
    }
    // Single-byte text: each byte stands for itself, so nothing is lost.
    return QString::fromLatin1(*bytes);
}

// How a bad stored value is dealt with: by the error handler (which raises
// it without an error object), or, when lenient and there is no error
// object, by a warning and going on.
struct FaultPolicy {
    bool lenient = false;
    std::function<void(const QString&)> warn;

    Next handle(const QmError& fault, const char* label) const {
        if (lenient && !app().errors) {
            if (warn) {
                warn(QStringLiteral("%1 in %2}: the value is ignored")
                         .arg(fault.description(), QLatin1String(label)));
            }
            return Next::GoOn;
        }
        return handleFault(fault);
    }
};

// Reads the trailer part of the text into the document; false when a fault
// ended the procedure.
bool readTrailer(const QString& text, DocumentModel& document, const FaultPolicy& policy) {
    const int start = text.indexOf(QLatin1String("{\\QuillmereInfo"), 0, Qt::CaseInsensitive);
    if (start < 0) {
        return true;
    }
    const QString kept = text.mid(start, text.size() - start - 1);
    QString value;
    for (int position = 1; position < int(kLabels.size()); ++position) {
        const QLatin1String label(kLabels[position]);
        const int at = kept.indexOf(label, 0, Qt::CaseInsensitive);
        if (at >= 0) {
            const int from = at + label.size();
            const int close = kept.indexOf(QLatin1Char('}'), from);
            value = close < 0 ? kept.mid(from) : kept.mid(from, close - from);
            value.replace(QLatin1String("\\'5c"), QLatin1String("\\"), Qt::CaseInsensitive);
            value = value.trimmed();
        }
        // A missing label leaves the previous value in hand.
        if (stringControl::isBlank(value)) {
            continue;
        }
        try {
            store(document, position, toInteger16(value));
        } catch (const QmError& fault) {
            if (policy.handle(fault, kLabels[position]) == Next::Leave) {
                return false;
            }
        }
    }
    return true;
}

void readCompanionFile(const QString& path, DocumentModel& document, const FaultPolicy& policy) {
    const QString companionPath = fileControl::AddBackslash(fileControl::FolderName(path)) +
                                  fileControl::FileName(fileControl::RemoveExtension(path)) +
                                  QStringLiteral(".rti");
    if (!fileControl::FileExists(companionPath)) {
        return;
    }
    clsINIFileCompanion companion;
    companion.initializeINI(companionPath);
    struct Key {
        const char* section;
        const char* key;
        const char* defaultValue;
        int position;
    };
    static const Key keys[] = {
        {"FileInformation", "FileType", "0", 1},
        {"FileInformation", "DocumentType", "1", 2},
        {"FileInformation", "InformationType", "1", 3},
        {"PageInformation", "leftMargin", "1440", 8},
        {"PageInformation", "topMargin", "1440", 10},
        {"PageInformation", "rightMargin", "1440", 9},
        {"PageInformation", "bottomMargin", "1440", 11},
    };
    bool leave = false;
    for (const Key& k : keys) {
        const QString value = companion.getKeyString(QLatin1String(k.section), QLatin1String(k.key),
                                                     QLatin1String(k.defaultValue), companionPath);
        try {
            store(document, k.position, toInteger16(value));
        } catch (const QmError& fault) {
            if (policy.handle(fault, k.key) == Next::Leave) {
                leave = true;
                break;
            }
        }
    }
    if (!leave) {
        // One-way migration: the next save writes a trailer instead.
        fileControl::DeleteFile(companionPath);
    }
}

} // namespace

QString buildCompanionTrailer(const DocumentModel& document) {
    const int values[] = {
        document.fileSaveType,
        document.documentType,
        toInt(document.InformationType),
        document.getDocumentOrientation(),
        document.PaperSize,
        document.getPageHeight(),
        document.getPageWidth(),
        document.getLeftMargin(),
        document.getRightMargin(),
        document.getTopMargin(),
        document.getBottomMargin(),
    };
    QString trailer = QStringLiteral("\r\n{\\QuillmereInfo");
    for (int i = 0; i < 11; ++i) {
        trailer += QLatin1String(kLabels[i + 1]) + QLatin1Char(' ') + trailerValue(values[i]) +
                   QStringLiteral("}\r\n");
    }
    return trailer;
}

QByteArray documentFileBytes(const QByteArray& content, const DocumentModel& document) {
    return documentFileBytes(content, buildCompanionTrailer(document).toLatin1());
}

QByteArray documentFileBytes(QByteArray content, const QByteArray& trailer) {
    // Text that starts with a visible ASCII character (RTF starts with a
    // brace) is not blank; only other text is widened and trimmed to tell.
    const bool surelyText =
        !content.isEmpty() && uchar(content.front()) > ' ' && uchar(content.front()) < 0x7f;
    if (!surelyText && stringControl::isBlank(QString::fromLatin1(content))) {
        return trailer;
    }
    // The box leaves a NUL behind its RTF.
    if (content.contains('\0')) {
        content.replace('\0', QByteArray());
    }
    return content.append(trailer);
}

void saveCompanionInformation(const QString& path, DocumentModel& document) {
    ProcedureScope scope(app().errors, kModule + QStringLiteral("saveCompanionInformation"));
    const QByteArray bytes = documentFileBytes(readAllText(path).toLatin1(), document);
    if (!fileControl::writeFileAtomically(path, bytes)) {
        throw QmError(QmError::PathFileAccessError,
                      QStringLiteral("Path/File access error: %1").arg(path));
    }
}

void openCompanionInformation(const QString& path, DocumentModel& document) {
    ProcedureScope scope(app().errors, kModule + QStringLiteral("openCompanionInformation"));
    const QString text = readAllText(path);
    const FaultPolicy policy;
    if (!stringControl::isBlank(text) && !readTrailer(text, document, policy)) {
        return;
    }
    readCompanionFile(path, document, policy);
}

void openCompanionInformationFromText(const QString& path, const QString& text,
                                      DocumentModel& document, bool lenient,
                                      const std::function<void(const QString&)>& warn) {
    ProcedureScope scope(app().errors, kModule + QStringLiteral("openCompanionInformation"));
    const FaultPolicy policy{lenient, warn};
    if (!stringControl::isBlank(text) && !readTrailer(text, document, policy)) {
        return;
    }
    readCompanionFile(path, document, policy);
}

QString getFileExtension(const DocumentModel& document) {
    switch (document.documentType) {
    case DocumentModel::Standard:
        return QStringLiteral("rtf");
    case DocumentModel::Template:
        switch (document.InformationType) {
        case InformationKind::Companies:
        case InformationKind::CompaniesAndContacts:
            return QStringLiteral("qmb");
        case InformationKind::Contacts:
            return QStringLiteral("qme");
        case InformationKind::Tasks:
            return QStringLiteral("qmt");
        case InformationKind::Appointments:
            return QStringLiteral("qma");
        default:
            return {};
        }
    case DocumentModel::SavedMergeResult:
        return QStringLiteral("qmw");
    default:
        return {};
    }
}
