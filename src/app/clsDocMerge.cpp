#include "app/clsDocMerge.h"

#include "context/AppContext.h"
#include "platform/FieldTable.h"
#include "platform/errorClass.h"
#include "platform/fileControl.h"

#include <cmath>
#include <limits>
#include <optional>

namespace {

const QString kTag = QStringLiteral("QuillmerePad.exe-clsDocMerge-");

// The 16-bit conversion of one IDListArray element: numbers and numeric
// text convert (fractions round to even, as the old conversion did); values
// outside 16 bits overflow.
short toInteger16(const QVariant& element, int index) {
    bool ok = false;
    double number = 0;
    switch (element.metaType().id()) {
    case QMetaType::QString:
    case QMetaType::QByteArray:
        number = element.toString().trimmed().toDouble(&ok);
        break;
    default:
        if (element.canConvert<double>()) {
            number = element.toDouble(&ok);
        }
        break;
    }
    if (!ok) {
        throw DocMergeError(
            DocMergeError::Kind::TypeMismatch,
            QStringLiteral("Type mismatch: IDListArray element %1 is not a number.").arg(index));
    }
    const double rounded = std::nearbyint(number);
    if (rounded > std::numeric_limits<short>::max() ||
        rounded < std::numeric_limits<short>::min()) {
        throw DocMergeError(DocMergeError::Kind::Overflow,
                            QStringLiteral("Overflow: IDListArray element %1 (%2) does not fit "
                                           "in a 16-bit integer (-32768 to 32767).")
                                .arg(index)
                                .arg(element.toString()));
    }
    return static_cast<short>(rounded);
}

bool isSingleNumber(const QVariant& value) {
    switch (value.metaType().id()) {
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::UChar:
    case QMetaType::SChar:
    case QMetaType::Double:
    case QMetaType::Float:
        return true;
    default:
        return false;
    }
}

// The elements of an array value, or nothing when the value is no array.
std::optional<QVariantList> arrayElements(const QVariant& value) {
    if (value.metaType().id() == QMetaType::QString ||
        value.metaType().id() == QMetaType::QByteArray) {
        return std::nullopt;
    }
    if (value.canConvert<QVariantList>()) {
        return value.value<QVariantList>();
    }
    return std::nullopt;
}

// The hourglass for the length of an opening call, whichever way it ends.
class BusyScope {
public:
    explicit BusyScope(DocMergeApplication& application) : m_application(application) {
        m_application.setBusy(true);
    }
    ~BusyScope() { m_application.setBusy(false); }
    BusyScope(const BusyScope&) = delete;
    BusyScope& operator=(const BusyScope&) = delete;

private:
    DocMergeApplication& m_application;
};

} // namespace

clsDocMerge::clsDocMerge(DocMergeApplication& application) : m_application(application) {}

clsDocMerge::~clsDocMerge() {
    if (app().docMergeObject == this) {
        app().docMergeObject = nullptr;
    }
}

void clsDocMerge::setErrorClass(std::unique_ptr<HostErrorObject> errors) {
    m_hostErrors = std::move(errors);
}

template <typename Work> void clsDocMerge::runTagged(const QString& procedure, Work&& work) {
    // Tags go to the host's object only; the program's own stack is left
    // alone when the host gave none.
    HostErrorObject* host = m_hostErrors.get();
    if (host) {
        host->enterProcedure(kTag + procedure);
    }
    try {
        work();
    } catch (const DocMergeError&) {
        if (host) {
            host->leaveProcedure();
        }
        throw;
    } catch (const std::exception& fault) {
        if (host) {
            const auto* qm = dynamic_cast<const QmError*>(&fault);
            host->reportError(qm ? qm->number() : int(QmError::Internal),
                              qm ? qm->description() : QString::fromUtf8(fault.what()));
        } else if (app().errors) {
            app().errors->handle(fault);
        }
    }
    if (host) {
        host->leaveProcedure();
    }
}

void clsDocMerge::setDatabaseLocation(const QString& path) {
    runTagged(QStringLiteral("DatabaseLocation"), [&] {
        if (fileControl::FileExists(path)) {
            m_databaseLocation = path;
            m_isValidDatabase = true;
        } else {
            m_databaseLocation.clear();
            m_isValidDatabase = false;
        }
        app().databaseLocation = m_databaseLocation;
    });
}

void clsDocMerge::requireNotOpened() const {
    if (m_opened) {
        throw DocMergeError(DocMergeError::Kind::AlreadyOpen,
                            QStringLiteral("The program is already open: a host makes one opening "
                                           "call (openDocMergeProgram, openExistingMergeDocument "
                                           "or openNewMergeDocument) per session."));
    }
}

void clsDocMerge::requireActiveDocument() const {
    if (!m_application.hasActiveDocument()) {
        throw DocMergeError(DocMergeError::Kind::NoActiveDocument,
                            QStringLiteral("There is no active document: make an opening call "
                                           "(openDocMergeProgram, openExistingMergeDocument or "
                                           "openNewMergeDocument) first."));
    }
}

QString clsDocMerge::SQLFilter() const {
    requireActiveDocument();
    return m_application.SQLFilter();
}

void clsDocMerge::setSQLFilter(const QString& filter) {
    requireActiveDocument();
    m_application.setSQLFilter(filter);
    m_application.connectToRemittRST();
}

void clsDocMerge::setIDListArray(const QVariant& value) {
    if (!value.isValid() || value.isNull()) {
        return;
    }
    std::vector<short> ids;
    if (const auto elements = arrayElements(value)) {
        // Converted whole before anything is added, so that a bad element
        // leaves the list as it was.
        ids.reserve(elements->size());
        for (int i = 0; i < elements->size(); ++i) {
            ids.push_back(toInteger16(elements->at(i), i));
        }
    } else if (isSingleNumber(value)) {
        ids.push_back(toInteger16(value, 0));
    } else {
        return;
    }
    requireActiveDocument();
    FieldTable& list = m_application.IDList();
    for (size_t i = 0; i < ids.size(); ++i) {
        list.addRow(int(i), {QString::number(ids[i])});
    }
}

std::vector<QStringList> clsDocMerge::IDList() const {
    requireActiveDocument();
    const FieldTable& list = m_application.IDList();
    std::vector<QStringList> rows;
    rows.reserve(size_t(list.rowCount()));
    for (int row = 1; row <= list.rowCount(); ++row) {
        QStringList values;
        for (int column = 1; column <= list.columnCount(); ++column) {
            values << list.value(row, column);
        }
        rows.push_back(values);
    }
    return rows;
}

void clsDocMerge::setIDList(const std::vector<QStringList>& rows) {
    requireActiveDocument();
    FieldTable& list = m_application.IDList();
    FieldTable given(list.columnCount());
    for (size_t i = 0; i < rows.size(); ++i) {
        given.addRow(int(i), rows[i]);
    }
    given.copyEntireListToSecondList(list);
}

void clsDocMerge::RaiseEventExitDocMerge() {
    if (m_exitDocMerge) {
        m_exitDocMerge();
    }
}

void clsDocMerge::Quit() {
    m_application.exitCurrentProgram();
}

void clsDocMerge::commonOpening() {
    app().isStandAlone = false;
    m_opened = true;
    m_application.startApplication(*this);
}

void clsDocMerge::emptyMergeRecipients(short mergeType) {
    m_application.changeTemplateInformation(mergeType);
    m_application.IDList().clear();
    m_application.setSQLFilter(QString());
}

void clsDocMerge::openDocMergeProgram() {
    requireNotOpened();
    BusyScope busy(m_application);
    runTagged(QStringLiteral("openDocMergeProgram"), [&] {
        commonOpening();
        m_application.createNewStandardDocument();
    });
}

void clsDocMerge::openExistingMergeDocument(const QString& filePath, short mergeType) {
    requireNotOpened();
    // No file: the program stays unstarted and the host hears nothing.
    if (!fileControl::FileExists(filePath)) {
        return;
    }
    BusyScope busy(m_application);
    runTagged(QStringLiteral("openExistingMergeDocument"), [&] {
        commonOpening();
        m_application.doEventsIfInputPending();
        m_application.openExistingDocument(filePath);
        // 7: the template keeps the kind, list and filter it was saved with.
        if (mergeType != 7 && m_application.hasActiveDocument()) {
            emptyMergeRecipients(mergeType);
        }
    });
}

void clsDocMerge::openNewMergeDocument(short mergeType) {
    requireNotOpened();
    BusyScope busy(m_application);
    runTagged(QStringLiteral("openNewMergeDocument"), [&] {
        commonOpening();
        m_application.doEventsIfInputPending();
        m_application.createNewStandardDocument();
        if (m_application.hasActiveDocument()) {
            emptyMergeRecipients(mergeType);
        }
    });
}

void clsDocMerge::performMerge() {
    requireActiveDocument();
    runTagged(QStringLiteral("performMerge"), [&] { m_application.performMerge(); });
}

void clsDocMerge::bringQuillmerePadToTop() {
    for (int i = 0; i < 4; ++i) {
        m_application.doEventsIfInputPending();
    }
    m_application.bringToForeground();
}
