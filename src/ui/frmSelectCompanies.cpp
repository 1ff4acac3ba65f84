#include "ui/frmSelectCompanies.h"

#include "context/AppContext.h"
#include "platform/FieldTable.h"
#include "platform/MsgboxClass.h"
#include "platform/errorClass.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QStyle>
#include <QTimer>
#include <QTreeView>
#include <QVBoxLayout>
#include <functional>

namespace {

// Nodes between two looks at the event queue while the tree builds, so that
// Cancel is heard without slowing a large build down.
constexpr int kNodesPerRepaint = 200;

// The pictures of the tree, by the builder's 1-based image numbers.
QList<QIcon> treeImages(const QStyle& style) {
    QList<QIcon> images(8);
    images[clsPopulateClientTree::CompanyImage - 1] = style.standardIcon(QStyle::SP_ComputerIcon);
    images[clsPopulateClientTree::ContactImage - 1] = style.standardIcon(QStyle::SP_FileIcon);
    images[clsPopulateClientTree::CategoryImage - 1] = style.standardIcon(QStyle::SP_DirIcon);
    images[clsPopulateClientTree::DefaultContactImage - 1] =
        style.standardIcon(QStyle::SP_DialogApplyButton);
    return images;
}

} // namespace

frmSelectCompanies::frmSelectCompanies(FieldTable& ids, QWidget* parent)
    : QDialog(parent), m_ids(ids), m_view(new QTreeView(this)), m_progress(new QProgressBar(this)),
      m_progressText(new QLabel(this)), m_label(new QLabel(this)),
      m_ok(new QPushButton(QStringLiteral("OK"), this)),
      m_cancel(new QPushButton(QStringLiteral("Cancel"), this)), m_startupTimer(new QTimer(this)) {
    setObjectName(QStringLiteral("frmSelectCompanies"));
    setModal(true);
    resize(420, 520);
    m_label->setObjectName(QStringLiteral("Label1"));
    m_label->setWordWrap(true);
    m_view->setObjectName(QStringLiteral("tvwContacts"));
    m_view->setHeaderHidden(true);
    m_view->setUniformRowHeights(true);
    m_view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_view->installEventFilter(this);
    m_progress->setObjectName(QStringLiteral("ProgressBar1"));
    m_progress->setAccessibleName(QStringLiteral("Progress of the client list"));
    m_progressText->setObjectName(QStringLiteral("lblProgress"));
    m_ok->setObjectName(QStringLiteral("cmdOK"));
    m_ok->setDefault(true);
    m_cancel->setObjectName(QStringLiteral("cmdCancel"));
    m_startupTimer->setObjectName(QStringLiteral("startupTimer"));
    m_startupTimer->setSingleShot(true);
    m_startupTimer->setInterval(0);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(m_ok);
    buttons->addWidget(m_cancel);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_label);
    layout->addWidget(m_view, 1);
    layout->addWidget(m_progressText);
    layout->addWidget(m_progress);
    layout->addLayout(buttons);

    m_tree.setImageListControl(treeImages(*style()));
    m_tree.setTreeViewControl(&m_model);
    m_tree.setIncProgressBar([this](int& count) { incProgressBar(count); });
    m_tree.setCancelRequested([this] { return m_cancelRequested; });
    m_label->setBuddy(m_view);
    m_view->setAccessibleName(QStringLiteral("Clients"));

    connect(m_startupTimer, &QTimer::timeout, this, [this] {
        m_startupTimer->stop();
        startUp();
    });
    connect(m_ok, &QPushButton::clicked, this, &frmSelectCompanies::cmdOK_Click);
    connect(m_cancel, &QPushButton::clicked, this, &frmSelectCompanies::cmdCancel_Click);
    connect(&m_model.model(), &QStandardItemModel::itemChanged, this,
            &frmSelectCompanies::tvwContacts_NodeCheck);
}

frmSelectCompanies::~frmSelectCompanies() {
    // The view must let go of the model before the model's items go.
    m_view->setModel(nullptr);
}

bool frmSelectCompanies::Initialize(int mode) {
    ProcedureScope scope(app().errors, "QuillmerePad.exe-frmSelectCompanies-Initialize");
    m_rules = RecipientSelection(mode);
    m_hasSelection = false;
    if (!RecipientSelection::available()) {
        if (app().msgbox) {
            app().msgbox->showMessage(RecipientSelection::unavailableMessage());
        }
        return false;
    }
    setWindowTitle(m_rules.caption());
    m_label->setText(m_rules.label());
    m_rules.configureTree(m_tree);
    return true;
}

void frmSelectCompanies::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    if (!m_started) {
        m_startupTimer->start();
    }
}

bool frmSelectCompanies::eventFilter(QObject* watched, QEvent* event) {
    // The tree can get the focus before the timer fires (a dialog shown
    // without its timer): the start-up runs then.
    if (watched == m_view && event->type() == QEvent::FocusIn && !m_started && isVisible()) {
        QTimer::singleShot(0, this, [this] { startUp(); });
    }
    return QDialog::eventFilter(watched, event);
}

void frmSelectCompanies::startUp() {
    if (m_started) {
        return;
    }
    m_started = true;
    ProcedureScope scope(app().errors, "QuillmerePad.exe-frmSelectCompanies-startupTimer_Timer");
    m_building = true;
    m_ok->setEnabled(false);
    m_progressText->setText(QStringLiteral("Loading the client list..."));
    // Built away from the view: a view that follows every insertion would
    // make a large ledger slow to show.
    m_view->setModel(nullptr);
    try {
        m_progress->setRange(0, std::max(1, m_tree.getRecordCount()));
        m_progress->setValue(0);
        m_tree.populateContactLedgerTree(false);
        m_tree.destroyRecordSets();
    } catch (const QmError& fault) {
        m_building = false;
        m_view->setModel(&m_model.model());
        if (app().msgbox) {
            app().msgbox->showMessage(QStringLiteral("The client list could not be read: ") +
                                      fault.description());
        }
        reject();
        return;
    }
    m_building = false;
    if (m_tree.buildCancelled()) {
        reject();
        return;
    }
    m_applyingTicks = true;
    m_rules.populateCheckedItems(m_model, m_ids, [] { doEventsIfInputPending(); });
    m_applyingTicks = false;
    m_view->setModel(&m_model.model());
    applyExpansion();
    m_progress->setValue(m_progress->maximum());
    m_progressText->setText(QStringLiteral("%1 items in the client list").arg(m_model.count()));
    m_ok->setEnabled(true);
    m_built = true;
}

void frmSelectCompanies::incProgressBar(int nodeCount) {
    if (nodeCount > m_progress->maximum()) {
        m_progress->setMaximum(nodeCount);
    }
    if (nodeCount % kNodesPerRepaint == 0) {
        m_progress->setValue(nodeCount);
        QApplication::processEvents();
    }
}

void frmSelectCompanies::applyExpansion() {
    QStandardItemModel& model = m_model.model();
    std::function<void(const QModelIndex&)> walk = [&](const QModelIndex& parent) {
        for (int row = 0; row < model.rowCount(parent); ++row) {
            const QModelIndex index = model.index(row, 0, parent);
            if (model.hasChildren(index)) {
                if (index.data(ClientTreeModel::ExpandedRole).toBool()) {
                    m_view->setExpanded(index, true);
                }
                walk(index);
            }
            if (index.data(ClientTreeModel::SelectedRole).toBool()) {
                m_view->setCurrentIndex(index);
            }
        }
    };
    walk(QModelIndex());
}

void frmSelectCompanies::tvwContacts_NodeCheck(QStandardItem* item) {
    // Ticks set by the rules themselves come back here too.
    if (m_applyingTicks || m_building || !item) {
        return;
    }
    ClientTreeNode* node = m_model.nodeFromIndex(item->index());
    if (!node) {
        return;
    }
    m_applyingTicks = true;
    m_rules.nodeCheck(m_tree, node);
    m_applyingTicks = false;
}

void frmSelectCompanies::cmdOK_Click() {
    ProcedureScope scope(app().errors, "QuillmerePad.exe-frmSelectCompanies-cmdOK_Click");
    if (!m_built) {
        return;
    }
    m_hasSelection = m_rules.saveInfo(m_model, m_ids);
    accept();
}

void frmSelectCompanies::cmdCancel_Click() {
    reject();
}

void frmSelectCompanies::reject() {
    if (m_building) {
        // The build stops at its next node and closes the dialog then.
        m_cancelRequested = true;
        return;
    }
    m_hasSelection = false;
    QDialog::reject();
}

bool frmSelectCompanies::selectRecipients(FieldTable& ids, int mode, QWidget* parent) {
    frmSelectCompanies dialog(ids, parent);
    if (!dialog.Initialize(mode)) {
        return false;
    }
    dialog.exec();
    return dialog.hasSelection();
}
