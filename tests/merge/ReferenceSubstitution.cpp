#include "merge/ReferenceSubstitution.h"

#include "merge/MergeSubstitution.h"
#include "platform/FieldTable.h"

#include <QStringList>
#include <stdexcept>

namespace {
const QChar kOpen(0x00AB);
const QChar kClose(0x00BB);
} // namespace

QString referenceSubstitution(const QString& text, const FieldTable& table, bool contactForCompany,
                              PlaceholderValues& values) {
    const QString escOpen = QStringLiteral("\\'ab");
    const QString escClose = QStringLiteral("\\'bb");
    QString search = text;
    search.replace(kOpen + QStringLiteral("Contact Full Name") + kClose,
                   kOpen + QStringLiteral("Contact Display Name") + kClose, Qt::CaseInsensitive);
    search.replace(escOpen + QStringLiteral("Contact Full Name") + escClose,
                   escOpen + QStringLiteral("Contact Display Name") + escClose,
                   Qt::CaseInsensitive);
    if (contactForCompany) {
        const QString a = kOpen + QStringLiteral("Company Name") + kClose;
        const QString b = kOpen + QStringLiteral("Contact Display Name") + kClose;
        const QString ea = escOpen + QStringLiteral("Company Name") + escClose;
        const QString eb = escOpen + QStringLiteral("Contact Display Name") + escClose;
        if (search.contains(a, Qt::CaseInsensitive) && !search.contains(b, Qt::CaseInsensitive)) {
            search.replace(a, b, Qt::CaseInsensitive);
        } else if (search.contains(ea, Qt::CaseInsensitive) &&
                   !search.contains(eb, Qt::CaseInsensitive)) {
            search.replace(ea, eb, Qt::CaseInsensitive);
        }
    }
    search.replace(escOpen, QString(kOpen));
    search.replace(escClose, QString(kClose));

    QString real = text;
    auto replace = [&](const QString& find, const QString& value) {
        QString token = find;
        token.replace(kOpen, escOpen);
        token.replace(kClose, escClose);
        const qsizetype at = real.indexOf(token, 0, Qt::CaseInsensitive);
        if (at < 0) {
            return;
        }
        const bool blank = at > 0 && real.at(at - 1) == QLatin1Char(' ');
        real.replace(token, blank ? value : QStringLiteral(" ") + value, Qt::CaseInsensitive);
    };
    const QStringList formats = {"dddd, mmmm d yyyy",
                                 "dddd mmmm d yyyy",
                                 "mmmm d, yyyy",
                                 "mmmm d yyyy",
                                 "mmm d yyyy",
                                 "dd/mm/yy",
                                 "mm/dd/yy",
                                 "d",
                                 "dddd",
                                 "mmmm",
                                 "mmm",
                                 "yyyy",
                                 "mmmm yyyy",
                                 "mmmm d"};
    for (const QString& f : formats) {
        const QString p =
            kOpen + QStringLiteral("(Todays Date, ") + f + QStringLiteral(")") + kClose;
        if (search.contains(p, Qt::CaseInsensitive)) {
            replace(p, values.dataDateField(QStringLiteral("Todays Date"), f));
        }
    }
    for (int row = 1; row <= table.rowCount(); ++row) {
        const QString name = table.value(row, 2);
        const QString type = table.value(row, 4);
        if (type == QLatin1String("Date")) {
            for (const QString& f : formats) {
                const QString p = kOpen + QStringLiteral("(") + name + QStringLiteral(", ") + f +
                                  QStringLiteral(")") + kClose;
                if (search.contains(p, Qt::CaseInsensitive)) {
                    replace(p, values.dataDateField(name, f == QLatin1String("dd/mm/yy")
                                                              ? QStringLiteral("dd/mmm/yy")
                                                              : f));
                }
            }
        } else if (search.contains(kOpen + name + kClose, Qt::CaseInsensitive)) {
            replace(kOpen + name + kClose, MergeSyntax::plainValue(values, name, type));
        }
    }
    while (real.contains(kOpen)) {
        const qsizetype open = real.indexOf(kOpen);
        const qsizetype close = real.indexOf(kClose, open);
        if (close < 0) {
            throw std::runtime_error("unclosed");
        }
        real.replace(real.mid(open, close - open + 1), QString());
    }
    return real;
}
