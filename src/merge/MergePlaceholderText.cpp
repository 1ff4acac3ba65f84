#include "merge/MergePlaceholderText.h"

#include "context/AppContext.h"
#include "merge/MergeFieldCatalogue.h"
#include "merge/MergeSubstitution.h"
#include "platform/errorClass.h"

namespace {

const QString kCrLf = QStringLiteral("\r\n");

QString guillemets(const QString& name) {
    return MergeSyntax::kOpen + name + MergeSyntax::kClose;
}

void replaceAll(QString& text, const QString& from, const QString& to) {
    text.replace(from, to, Qt::CaseInsensitive);
}

void replacePlaceholder(QString& text, const char* from, const char* to) {
    replaceAll(text, guillemets(QString::fromUtf8(from)), guillemets(QString::fromUtf8(to)));
}

struct Rename {
    const char* from;
    const char* to;
};

const Rename kOldNames[] = {
    {"Notified Date", "Calendar Date"},
    {"Weekday Date", "Calendar Date"},
    {"Remittance Name", "Task Name"},
    {"Remittance Due Date", "Task Due Date"},
    {"Remittance in-House Due Date", "Task in-House Due Date"},
    {"Remittance Weekday Due Date", "Task Calendar Date"},
    {"Task Weekday Due Date", "Task Calendar Date"},
    {"Remittance Year", "Task Year"},
    {"Custom Remitt Field 1", "Custom Task Field 1"},
    {"Custom Remitt Field 2", "Custom Task Field 2"},
    {"Custom Remitt Field 3", "Custom Task Field 3"},
    {"Custom Remitt Field 4", "Custom Task Field 4"},
    {"Custom Remitt Field 5", "Custom Task Field 5"},
    {"Contact Full Name", "Contact Display Name"},
    {"Task Date", "Task Due Date"},
};

// United States names to Canadian ones; the reverse for the United States.
const Rename kCanadianNames[] = {
    {"State", "Province"},
    {"Zip Code", "Postal Code"},
    {"Contact Business State", "Contact Business Province"},
    {"Contact Business Zip Code", "Contact Business Postal Code"},
    {"Contact Home State", "Contact Home Province"},
    {"Contact Home Zip Code", "Contact Home Postal Code"},
    {"Spouse Home State", "Spouse Home Province"},
    {"Spouse Home Zip Code", "Spouse Home Postal Code"},
    {"Your State", "Your Province"},
    {"Your Zip Code", "Your Postal Code"},
    {"Contact SSN", "Contact SIN"},
    {"Spouse SSN", "Spouse SIN"},
};

const char* const kCorporationTaxWords[] = {"ON",   "Alberta", "BC",   "Manitoba", "Sask.",
                                            "Que.", "N.B.",    "N.S.", "Nfld.",    "P.E.I."};

void workerCompensationRewrite(QString& text, char kind) {
    switch (kind) {
    case 'W':
        replacePlaceholder(text, "WSIB Number", "WCB Number");
        replacePlaceholder(text, "NEQ Number", "WCB Number");
        replacePlaceholder(text, "WHSCC Number", "WCB Number");
        replacePlaceholder(text, "WSIB Firm Number", "WSIB Firm Number");
        replacePlaceholder(text, "WSIB Premium Rate", "WCB Premium Rate");
        break;
    case 'Q':
        replacePlaceholder(text, "WSIB Number", "NEQ Number");
        replacePlaceholder(text, "WSIB Firm Number", "WSIB Firm Number");
        replacePlaceholder(text, "WSIB Premium Rate", "CSST Premium Rate");
        replacePlaceholder(text, "WHSCC Number", "WCB Number");
        replacePlaceholder(text, "ON Corp. MCBS Number", "Quebec ID Number");
        break;
    case 'C':
        replacePlaceholder(text, "WSIB Number", "WHSCC Number");
        replacePlaceholder(text, "WCB Number", "WHSCC Number");
        replacePlaceholder(text, "NEQ Number", "WHSCC Number");
        replacePlaceholder(text, "WSIB Firm Number", "WSIB Firm Number");
        replacePlaceholder(text, "WSIB Premium Rate", "WHSCC Premium Rate");
        break;
    default:
        replacePlaceholder(text, "WCB Number", "WSIB Number");
        replacePlaceholder(text, "NEQ Number", "WSIB Number");
        replacePlaceholder(text, "WHSCC Number", "WSIB Number");
        replacePlaceholder(text, "WCB Firm Number", "WSIB Firm Number");
        replacePlaceholder(text, "WCB Premium Rate", "WSIB Premium Rate");
        replacePlaceholder(text, "Quebec ID Number", "ON Corp. MCBS Number");
        break;
    }
}

void salesTaxRewrite(QString& text, char kind) {
    switch (kind) {
    case 'G':
        replacePlaceholder(text, "HST Number", "GST Number");
        break;
    case 'H':
        replacePlaceholder(text, "GST Number", "HST Number");
        break;
    default:
        // Both steps run in this order; the second undoes the first.
        if (app().clock.today() >= QDate(2010, 7, 1)) {
            replacePlaceholder(text, "GST Number", "HST Number");
        }
        replacePlaceholder(text, "HST Number", "GST Number");
        break;
    }
}

} // namespace

QString MergePlaceholderText::convertFieldName(const QString& text) {
    QString out = text;
    out.replace(MergeSyntax::kOpen, MergeSyntax::openEscape(), Qt::CaseInsensitive);
    out.replace(MergeSyntax::kClose, MergeSyntax::closeEscape(), Qt::CaseInsensitive);
    return out;
}

QString MergePlaceholderText::templateFault(const QString& text, bool inRTF, bool skipFieldNames,
                                            const MergeFieldCatalogue& catalogue) {
    const QString missingOpening = QStringLiteral(
        "You are missing your opening brackets, '\u00AB' in one of your expressions");
    const QString openToken = inRTF ? MergeSyntax::openEscape() : QString(MergeSyntax::kOpen);
    const QString closeToken = inRTF ? MergeSyntax::closeEscape() : QString(MergeSyntax::kClose);
    const qsizetype tokenLength = openToken.size();

    // The text not yet examined is text[base...]; positions are 1-based
    // within it, 0 when absent. (Walking an offset instead of copying the
    // rest keeps a long template linear.)
    qsizetype base = 0;
    auto find = [&](qsizetype start, const QString& token) -> qsizetype {
        const qsizetype at = text.indexOf(token, base + start - 1, Qt::CaseInsensitive);
        return at < 0 ? 0 : at - base + 1;
    };
    qsizetype open = find(1, openToken);
    qsizetype close = find(1, closeToken);
    bool fault = false;
    QString message;
    if (close < open) {
        fault = true;
        message = missingOpening;
    }
    while (open >= 1 && !fault) {
        const qsizetype closing = find(open, closeToken);
        const QString body = text.mid(base + open - 1 + tokenLength, closing - open - tokenLength);
        base += closing - 1 + tokenLength;

        QString name = body;
        if (body.startsWith(QLatin1Char('('))) {
            if (!body.endsWith(QLatin1Char(')'))) {
                fault = true;
                message = QStringLiteral("You are missing the closing round bracket, ')' in one of "
                                         "your date expressions");
            } else {
                const QString inner = body.mid(1, body.size() - 2);
                const qsizetype comma = inner.indexOf(QLatin1Char(','));
                if (comma < 0) {
                    throw QmError(QmError::SubscriptOutOfRange,
                                  QStringLiteral("Subscript out of range"));
                }
                name = inner.left(comma).trimmed();
                const QString format = inner.mid(comma + 1).trimmed();
                if (!MergeSyntax::dateFormats().contains(format, Qt::CaseSensitive)) {
                    fault = true;
                    message = QStringLiteral("The date format of: '") + format +
                              QStringLiteral("' is not valid.  Please see help for valid date "
                                             "formats.");
                }
            }
        } else if (body.endsWith(QLatin1Char(')'))) {
            fault = true;
            message = QStringLiteral(
                "You are missing the opening round bracket, '(' in one of your date expressions");
        }
        if (name.size() > 40 && !fault) {
            fault = true;
            message = QStringLiteral("You are missing a closing bracket, '\u00BB' in one of your "
                                     "expressions.  Make sure you have a bracket immediately "
                                     "before and after a field.") +
                      kCrLf + kCrLf + QStringLiteral("eg. \u00ABCompany Name\u00BB");
        }
        if (!skipFieldNames && !fault && !catalogue.testStr(name)) {
            fault = true;
            message = QStringLiteral("The Quillmere Pad did not recognize: \u00AB") + name +
                      QStringLiteral("\u00BB as a valid placeholder field name.");
        }
        open = find(1, openToken);
        close = find(1, closeToken);
        if (!fault && close < open) {
            fault = true;
            message = missingOpening;
        }
    }
    return message;
}

bool MergePlaceholderText::replaceText(QString& text, const QString& find, const QString& value,
                                       bool inRTF) {
    if (!inRTF) {
        text.replace(find, value, Qt::CaseInsensitive);
        return false;
    }
    const QString token = convertFieldName(find);
    const qsizetype at = text.indexOf(token, 0, Qt::CaseInsensitive);
    if (at < 0) {
        return false;
    }
    const bool blankBefore = at > 0 && text.at(at - 1) == QLatin1Char(' ');
    text.replace(token, blankBefore ? value : QLatin1Char(' ') + value, Qt::CaseInsensitive);
    return false;
}

bool MergePlaceholderText::replaceUnfoundMergeFieldsWithBlanks(QString& text) {
    qsizetype open = text.indexOf(MergeSyntax::kOpen);
    while (open >= 0) {
        const qsizetype close = text.indexOf(MergeSyntax::kClose, open + 1);
        if (close < 0) {
            throw QmError(5, QStringLiteral("Invalid procedure call or argument"));
        }
        const QString span = text.mid(open, close - open + 1);
        text.replace(span, QString());
        open = text.indexOf(MergeSyntax::kOpen);
    }
    return false;
}

QString MergePlaceholderText::removeBlankLinesFromRTFText(const QString& text) {
    QString withoutBlankLines = text;
    withoutBlankLines.replace(QStringLiteral("\\par \r\n"), QString());
    Q_UNUSED(withoutBlankLines);
    return text;
}

QString MergePlaceholderText::convertProvinceFields(const QString& text) {
    QString out = text;
    replaceAll(out, QStringLiteral("<<"), QString(MergeSyntax::kOpen));
    replaceAll(out, QStringLiteral(">>"), QString(MergeSyntax::kClose));
    replaceAll(out, QStringLiteral("Long Date"), QStringLiteral("dddd, mmmm d yyyy"));
    replaceAll(out, QStringLiteral("Medium Date"), QStringLiteral("mmm d yyyy"));
    replaceAll(out, QStringLiteral("Short Date"), QStringLiteral("dd/mm/yy"));

    for (const Rename& r : kOldNames) {
        replacePlaceholder(out, r.from, r.to);
    }
    for (const Rename& r : kOldNames) {
        replaceAll(
            out, MergeSyntax::openEscape() + QString::fromUtf8(r.from) + MergeSyntax::closeEscape(),
            MergeSyntax::openEscape() + QString::fromUtf8(r.to) + MergeSyntax::closeEscape());
    }
    replaceAll(out, MergeSyntax::kOpen + QStringLiteral("Task Date,"),
               MergeSyntax::kOpen + QStringLiteral("Task Due Date,"));
    replaceAll(out, MergeSyntax::openEscape() + QStringLiteral("Task Date,"),
               MergeSyntax::openEscape() + QStringLiteral("Task Due Date,"));

    if (app().currentCountry == 1) {
        const int province = app().currentProvince;
        char worker = 'O';
        char sales = 'X';
        switch (province) {
        case 0:
        case 2:
        case 4:
        case 12:
            worker = 'W';
            sales = 'G';
            break;
        case 1:
            worker = 'W';
            break;
        case 8:
            worker = 'Q';
            sales = 'G';
            break;
        case 9:
            worker = 'W';
            sales = 'H';
            break;
        case 10:
        case 11:
            worker = 'C';
            sales = 'H';
            break;
        default:
            break;
        }
        workerCompensationRewrite(out, worker);
        salesTaxRewrite(out, sales);
        const QString own = MergeFieldCatalogue::corporationTaxWord(province);
        for (const char* word : kCorporationTaxWords) {
            const QString other = QString::fromLatin1(word);
            if (other != own) {
                replaceAll(out, guillemets(other + QStringLiteral(" Corp. Tax Number")),
                           guillemets(own + QStringLiteral(" Corp. Tax Number")));
            }
        }
        for (const Rename& r : kCanadianNames) {
            replacePlaceholder(out, r.from, r.to);
        }
    } else if (app().currentCountry == 2) {
        for (const Rename& r : kCanadianNames) {
            replacePlaceholder(out, r.to, r.from);
        }
    }
    return out;
}
