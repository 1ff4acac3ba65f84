#include "platform/rtf/RtfControlWords.h"

#include "platform/rtf/RtfFormatState.h"

#include <QSet>
#include <QString>
#include <gtest/gtest.h>

namespace {

QString nameOf(const RtfWord::Entry& entry) {
    return QString::fromUtf16(entry.name.data(), qsizetype(entry.name.size()));
}

} // namespace

TEST(RtfControlWordsTest, EveryNameIsListedOnceAndIsAControlWord) {
    QSet<QString> seen;
    for (const RtfWord::Entry& entry : RtfWord::entries()) {
        const QString name = nameOf(entry);
        SCOPED_TRACE(name.toStdString());
        EXPECT_FALSE(seen.contains(name)) << "listed twice: the second would never be read";
        seen.insert(name);
        ASSERT_FALSE(name.isEmpty());
        for (const QChar c : name) {
            EXPECT_TRUE((c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z'));
        }
        EXPECT_EQ(RtfWord::find(name), &entry);
    }
}

TEST(RtfControlWordsTest, WhatIsWrittenReadsBackAsTheSameMeaning) {
    for (const RtfWord::Entry& entry : RtfWord::entries()) {
        SCOPED_TRACE(nameOf(entry).toStdString());
        const QStringView written = RtfWord::spelling(entry.kind, entry.meaning);
        const RtfWord::Entry* read = RtfWord::find(written);
        ASSERT_NE(read, nullptr);
        EXPECT_EQ(read->kind, entry.kind);
        EXPECT_EQ(read->meaning, entry.meaning);
    }
}

TEST(RtfControlWordsTest, SynonymsAreWrittenWithTheirCommonName) {
    using K = RtfWord::Kind;
    const struct {
        K kind;
        int meaning;
        const char16_t* name;
    } cases[] = {
        {K::Character, RtfWord::Underline, u"ul"},
        {K::Character, RtfWord::Highlight, u"highlight"},
        {K::Character, RtfWord::Strike, u"strike"},
        {K::Paragraph, RtfWord::ParagraphEnd, u"par"},
        {K::OldNumbering, RtfWord::NumberBody, u"pnlvlbody"},
        {K::Table, RtfWord::CellEnd, u"cell"},
        {K::Table, RtfWord::RowEnd, u"row"},
        {K::Special, '\t', u"tab"},
        {K::Destination, int(RtfDestination::OldNumbering), u"pn"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(RtfWord::spelling(c.kind, c.meaning), QStringView(c.name));
    }
}

TEST(RtfControlWordsTest, LookupIsExactAndCaseSensitive) {
    EXPECT_NE(RtfWord::find(u"par"), nullptr);
    for (const char16_t* name : {u"PAR", u"pa", u"parx", u"", u"Par"}) {
        EXPECT_EQ(RtfWord::find(name), nullptr) << QString::fromUtf16(name).toStdString();
    }
}
