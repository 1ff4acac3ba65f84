#include "merge/MergeRun.h"

#include "context/AppContext.h"
#include "data/clsPopulateClientTree.h"
#include "data/databaseControl.h"
#include "merge/MergeLookups.h"
#include "merge/clsInsertFieldsInRTB.h"
#include "platform/ProgressReporter.h"
#include "platform/tree/ClientTreeView.h"

namespace {

// Puts the run's inserter, database, date and province in the application
// context for one call and restores what stood there.
class ContextBinding {
public:
    ContextBinding(clsInsertFieldsInRTB& fields, databaseControl& db, const MergeRequest& request)
        : m_context(app()), m_fields(m_context.fieldInserter), m_db(m_context.database),
          m_province(m_context.currentProvince), m_clockWasFixed(m_context.clock.isFixed()),
          m_moment(m_context.clock.now()) {
        m_context.fieldInserter = &fields;
        m_context.database = &db;
        if (request.today.isValid()) {
            m_context.clock.setFixed(QDateTime(request.today, QTime(12, 0)));
        }
        if (request.province) {
            m_context.currentProvince = *request.province;
        }
    }
    ~ContextBinding() {
        m_context.fieldInserter = m_fields;
        m_context.database = m_db;
        m_context.currentProvince = m_province;
        if (m_clockWasFixed) {
            m_context.clock.setFixed(m_moment);
        } else {
            m_context.clock.reset();
        }
    }
    ContextBinding(const ContextBinding&) = delete;
    ContextBinding& operator=(const ContextBinding&) = delete;

private:
    AppContext& m_context;
    clsInsertFieldsInRTB* m_fields;
    databaseControl* m_db;
    short m_province;
    bool m_clockWasFixed;
    QDateTime m_moment;
};

void walkRecordset(databaseControl& db, const QString& sql, const std::function<void(int)>& each) {
    const int rs = db.openRecordset(sql);
    try {
        while (db.hasRecords(rs) && !db.isEOF(rs)) {
            each(rs);
            db.moveNext(rs);
        }
    } catch (...) {
        db.closeRecordset(rs);
        throw;
    }
    db.closeRecordset(rs);
}

void addNodes(const ClientTreeNode* node, int mode, FieldTable& ids) {
    for (; node; node = node->next()) {
        if (node->checked()) {
            const QString type = clsPopulateClientTree::getSelectedNodeTypeFromNode(node);
            const int id = clsPopulateClientTree::getSelectedNodeIDFromNode(node);
            if (mode == 1 && type == QLatin1String("Company")) {
                ids.addRow(ids.rowCount() + 1, {QString::number(id), QString()});
            } else if ((mode == 2 || mode == 3) && type == QLatin1String("Contact")) {
                ids.addRow(
                    ids.rowCount() + 1,
                    {QString::number(clsPopulateClientTree::getHostCompanyFromSelectedNode(node)),
                     QString::number(id)});
            }
        }
        addNodes(node->child(), mode, ids);
    }
}

} // namespace

MergeRun::MergeRun(MergeRequest request) : m_request(std::move(request)) {
    m_result.model = m_request.model;
    m_result.templateCaption = m_request.templateCaption;
    m_result.templateText = m_request.templateText;
    m_result.templatePages = m_request.templatePages;
}

void MergeRun::addAllRecipients(InformationKind type, databaseControl& db, FieldTable& ids) {
    if (isSearchKind(type)) {
        const bool tasks = type == InformationKind::Tasks;
        const QString column =
            tasks ? QStringLiteral("ScheduleID") : QStringLiteral("AppointmentID");
        const QString sql = tasks ? QStringLiteral("SELECT Schedule.ScheduleID FROM Schedule "
                                                   "ORDER BY Schedule.ScheduleID;")
                                  : QStringLiteral("SELECT Appointments.AppointmentID FROM "
                                                   "Appointments ORDER BY "
                                                   "Appointments.AppointmentID;");
        walkRecordset(db, sql, [&](int rs) {
            ids.addRow(ids.rowCount() + 1, {db.getField(rs, column).toString(), QString()});
        });
        return;
    }
    // The clients of the business list, by their IDs alone: the list is
    // sorted by ID before the merge, so the rows' order does not matter, and
    // every column of ten tables for every client would cost more than the
    // letters' own reads.
    const QString business = MergeLookups::getMainBusinessSQLString(true, 0);
    const QString idsOnly = QStringLiteral("SELECT Companies.CompanyID ") +
                            business.mid(business.indexOf(QLatin1String(" FROM ")) + 1);
    std::vector<int> companies;
    walkRecordset(db, idsOnly, [&](int rs) {
        companies.push_back(db.getField(rs, QStringLiteral("Companies.CompanyID")).toInt());
    });
    for (int company : companies) {
        if (type != InformationKind::Contacts) {
            ids.addRow(ids.rowCount() + 1, {QString::number(company), QString()});
            continue;
        }
        walkRecordset(db,
                      QStringLiteral("SELECT ContactLinks.ContactIDNum, ContactLinks.CompanyNum "
                                     "FROM ContactLinks WHERE ContactLinks.CompanyNum = ") +
                          QString::number(company) + QLatin1Char(';'),
                      [&](int rs) {
                          ids.addRow(ids.rowCount() + 1,
                                     {QString::number(company),
                                      db.getField(rs, QStringLiteral("ContactIDNum")).toString()});
                      });
    }
}

void MergeRun::addTickedNodes(const ClientTreeView& tree, int mode, FieldTable& ids) {
    addNodes(tree.firstRoot(), mode, ids);
}

bool MergeRun::prepareRecipients(databaseControl& db) {
    const InformationKind type = m_result.model.InformationType;
    m_result.IDList.clear();
    m_result.SQLFilter.clear();
    switch (m_request.recipients) {
    case MergeRequest::Recipients::Listed:
        for (int row = 1; row <= m_request.IDList.rowCount(); ++row) {
            m_result.IDList.addRow(
                row, {m_request.IDList.value(row, 1), m_request.IDList.value(row, 2)});
        }
        return true;
    case MergeRequest::Recipients::All:
        addAllRecipients(type, db, m_result.IDList);
        return true;
    case MergeRequest::Recipients::Filtered:
        if (!isSearchKind(type)) {
            m_problem = QStringLiteral("Only task and appointment templates merge from a search.");
            return false;
        }
        m_result.SQLFilter = m_request.SQLFilter;
        m_result.connectToRemittRST();
        return true;
    case MergeRequest::Recipients::TaskCriteria:
    case MergeRequest::Recipients::AppointmentCriteria: {
        const bool tasks = m_request.recipients == MergeRequest::Recipients::TaskCriteria;
        if (type != (tasks ? InformationKind::Tasks : InformationKind::Appointments)) {
            m_problem = QStringLiteral("Search criteria of this kind cannot choose the "
                                       "recipients of this template.");
            return false;
        }
        m_problem = tasks ? m_result.taskSearch.setCriteria(m_request.criteria)
                          : m_result.appointmentSearch.setCriteria(m_request.criteria);
        if (!m_problem.isEmpty()) {
            return false;
        }
        if (tasks) {
            m_result.taskSearch.generateSQLFilter();
            m_result.SQLFilter = m_result.taskSearch.SQLFilter;
        }
        // The appointment criteria stand in the SELECT itself, so its
        // record-set filter stays blank.
        m_result.connectToRemittRST();
        return true;
    }
    }
    return true;
}

bool MergeRun::prepare(clsInsertFieldsInRTB& fields, databaseControl& db) {
    m_problem.clear();
    const InformationKind type = m_result.model.InformationType;
    if (!isMergeableKind(type)) {
        m_problem = QStringLiteral("Templates of information type ") +
                    QString::number(toInt(type)) + QStringLiteral(" cannot be merged here.");
        return false;
    }
    if (!prepareRecipients(db)) {
        return false;
    }
    fields.createDefaultFieldListStructure(type, true, true);
    return true;
}

MergeRun::Outcome MergeRun::merge(clsInsertFieldsInRTB& fields, databaseControl& db,
                                  ProgressReporter& progress) {
    ContextBinding binding(fields, db, m_request);
    if (!prepare(fields, db)) {
        return Outcome::Refused;
    }
    return m_result.createMergeDocument(progress) ? Outcome::Merged : Outcome::NothingToMerge;
}

int MergeRun::file(clsInsertFieldsInRTB& fields, databaseControl& db, ProgressReporter& progress,
                   std::function<void(const MergedRecord&)> onFiled) {
    ContextBinding binding(fields, db, m_request);
    m_result.onFiled = std::move(onFiled);
    try {
        m_notFiled = m_result.saveMergeDocument(progress, m_request.vaultRoot);
    } catch (...) {
        m_result.onFiled = nullptr;
        throw;
    }
    m_result.onFiled = nullptr;
    return m_notFiled;
}

MergeRun::Outcome MergeRun::mergeAndFile(clsInsertFieldsInRTB& fields, databaseControl& db,
                                         ProgressReporter& progress,
                                         std::function<void(const MergedRecord&)> onFiled) {
    ContextBinding binding(fields, db, m_request);
    m_notFiled = 0;
    if (!prepare(fields, db)) {
        return Outcome::Refused;
    }
    m_result.onFiled = std::move(onFiled);
    std::optional<int> failures;
    try {
        failures = m_result.mergeAndSaveDocument(progress, m_request.vaultRoot);
    } catch (...) {
        m_result.onFiled = nullptr;
        throw;
    }
    m_result.onFiled = nullptr;
    if (!failures) {
        return Outcome::NothingToMerge;
    }
    m_notFiled = *failures;
    return Outcome::Merged;
}
