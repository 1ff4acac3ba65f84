#include "merge/clsInsertFieldsInRTB.h"

#include "context/AppContext.h"
#include "merge/MergePlaceholderText.h"
#include "platform/MsgboxClass.h"
#include "platform/errorClass.h"
#include "platform/richtext/RichTextBox.h"

clsInsertFieldsInRTB::clsInsertFieldsInRTB() = default;
clsInsertFieldsInRTB::~clsInsertFieldsInRTB() = default;

void clsInsertFieldsInRTB::setTargetTextBox(RichTextBox* box) {
    m_target = box;
}

void clsInsertFieldsInRTB::insertAtCaret(const QString& text) {
    if (!m_target || text.isEmpty()) {
        return;
    }
    m_target->setSelLength(0);
    m_target->setSelText(text);
}

void clsInsertFieldsInRTB::onListClick(int row) {
    ProcedureScope scope(app().errors, "QuillmerePad.exe-clsInsertFieldsInRTB-onListClick");
    insertAtCaret(parseListItem(row, true));
}

void clsInsertFieldsInRTB::insertCurrentDate(int formatNumber) {
    ProcedureScope scope(app().errors, "QuillmerePad.exe-clsInsertFieldsInRTB-insertCurrentDate");
    const QStringList& formats = MergeSyntax::dateFormats();
    if (formatNumber < 1 || formatNumber > formats.size()) {
        throw QmError(QmError::SubscriptOutOfRange, QStringLiteral("Subscript out of range"));
    }
    insertAtCaret(MergeSyntax::kOpen + QStringLiteral("(Todays Date, ") +
                  formats.at(formatNumber - 1) + QLatin1Char(')') + MergeSyntax::kClose);
}

QString clsInsertFieldsInRTB::convertFieldName(const QString& text) {
    return MergePlaceholderText::convertFieldName(text);
}

bool clsInsertFieldsInRTB::replaceText(QString& text, const QString& find, const QString& value,
                                       bool inRTF) {
    return MergePlaceholderText::replaceText(text, find, value, inRTF);
}

bool clsInsertFieldsInRTB::replaceUnfoundMergeFieldsWithBlanks(QString& text) {
    return MergePlaceholderText::replaceUnfoundMergeFieldsWithBlanks(text);
}

QString clsInsertFieldsInRTB::removeBlankLinesFromRTFText(const QString& text) {
    return MergePlaceholderText::removeBlankLinesFromRTFText(text);
}

QString clsInsertFieldsInRTB::convertProvinceFields(const QString& text) const {
    ProcedureScope scope(app().errors,
                         "QuillmerePad.exe-clsInsertFieldsInRTB-convertProvinceFields");
    return MergePlaceholderText::convertProvinceFields(text);
}

bool clsInsertFieldsInRTB::testRTBComment(const QString& text, bool inRTF, bool showMessages,
                                          bool skipFieldNames) {
    ProcedureScope scope(app().errors, "QuillmerePad.exe-clsInsertFieldsInRTB-testRTBComment");
    m_lastTestMessage.clear();
    m_lastTestMessage =
        MergePlaceholderText::templateFault(text, inRTF, skipFieldNames, m_catalogue);
    const bool fault = !m_lastTestMessage.isEmpty();
    if (fault && showMessages && app().msgbox) {
        app().msgbox->showMessage(m_lastTestMessage);
    }
    return fault;
}

void clsInsertFieldsInRTB::initializeDataRecordsets(int mergeType, bool openAll, int recordID,
                                                    bool openBusiness, bool openCompanies,
                                                    bool openContacts, bool openFirm,
                                                    bool openEmployees, int companyID,
                                                    int contactID) {
    Q_UNUSED(openEmployees);
    m_reader.initializeDataRecordsets(informationKindFromInt(mergeType), openAll, recordID,
                                      openBusiness, openCompanies, openContacts, openFirm,
                                      companyID, contactID);
}

QString clsInsertFieldsInRTB::getDataField(const QString& englishName, int companyID, int contactID,
                                           int scheduleID, int firmID, int appointmentID,
                                           int docketID, int taskID, bool useSamples, bool inRTF) {
    return m_reader.getDataField(
        englishName, {companyID, contactID, scheduleID, firmID, appointmentID, docketID, taskID},
        useSamples, inRTF);
}

QString clsInsertFieldsInRTB::getDataDateField(const QString& englishName, const QString& format,
                                               int companyID, int contactID, int scheduleID,
                                               int firmID, int appointmentID, int docketID,
                                               int taskID, bool useSamples, bool inRTF) {
    return m_reader.getDataDateField(
        englishName, format,
        {companyID, contactID, scheduleID, firmID, appointmentID, docketID, taskID}, useSamples,
        inRTF);
}

QString clsInsertFieldsInRTB::getContactAndSpouseName(int contactID, bool lastNameFirst) {
    return m_reader.getContactAndSpouseName(contactID, lastNameFirst);
}
