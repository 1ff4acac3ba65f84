#pragma once

#include <QPointF>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QString>
#include <QStringList>

// Reads a PDF back with poppler's command-line tools.
struct PdfText {
    static bool available() {
        return !QStandardPaths::findExecutable(QStringLiteral("pdftotext")).isEmpty() &&
               !QStandardPaths::findExecutable(QStringLiteral("pdfinfo")).isEmpty();
    }
    static QString run(const QString& program, const QStringList& args) {
        QProcess process;
        process.start(program, args);
        process.waitForFinished(60000);
        return QString::fromUtf8(process.readAllStandardOutput());
    }
    // A field of pdfinfo: "Pages", "Page size", ...
    static QString info(const QString& pdf, const QString& field) {
        const QString out = run(QStringLiteral("pdfinfo"), {pdf});
        const QRegularExpression line(QStringLiteral("^") + QRegularExpression::escape(field) +
                                          QStringLiteral(":\\s*(.*)$"),
                                      QRegularExpression::MultilineOption);
        return line.match(out).captured(1).trimmed();
    }
    // The words of one page, in reading order.
    static QStringList pageWords(const QString& pdf, int page) {
        const QString number = QString::number(page);
        return run(QStringLiteral("pdftotext"), {QStringLiteral("-f"), number, QStringLiteral("-l"),
                                                 number, pdf, QStringLiteral("-")})
            .split(QRegularExpression(QStringLiteral("\\s+")), Qt::SkipEmptyParts);
    }
    // The box of the first word of a page, in points: xMin, yMin.
    static QPointF firstWord(const QString& pdf, int page) {
        const QString number = QString::number(page);
        const QString out = run(QStringLiteral("pdftotext"),
                                {QStringLiteral("-bbox"), QStringLiteral("-f"), number,
                                 QStringLiteral("-l"), number, pdf, QStringLiteral("-")});
        const QRegularExpression word(
            QStringLiteral("<word xMin=\"([\\d.]+)\" yMin=\"([\\d.]+)\""));
        const QRegularExpressionMatch match = word.match(out);
        return {match.captured(1).toDouble(), match.captured(2).toDouble()};
    }
};
