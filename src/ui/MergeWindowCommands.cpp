#include "ui/MergeWindowCommands.h"

#include "app/MenuDefinition.h"
#include "context/AppContext.h"
#include "files/clsINI.h"
#include "files/clsWorkingFolderLocation.h"
#include "merge/clsInsertFieldsInRTB.h"
#include "merge/modDocVaultFolders.h"
#include "platform/FileDialogs.h"
#include "platform/MsgboxClass.h"
#include "platform/ProgressReporter.h"
#include "platform/errorClass.h"
#include "platform/fileControl.h"
#include "platform/text/stringControl.h"
#include "print/PdfExport.h"
#include "ui/CommandActions.h"
#include "ui/DocumentCommands.h"
#include "ui/PageView.h"
#include "ui/PrintCommands.h"
#include "ui/cbrMergeTools.h"
#include "ui/frmDocument.h"
#include "ui/frmMain.h"

#include <QAction>
#include <QDir>
#include <QFileInfo>
#include <QListWidget>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QScrollBar>
#include <QTextDocument>
#include <QToolBar>

namespace {

void tell(const QString& text) {
    if (app().msgbox) {
        app().msgbox->showMessage(text);
    }
}

// How many failed letters a message names before it counts the rest.
constexpr int kNamedFailures = 10;

void copyPageSetup(const DocumentModel& from, DocumentModel& to) {
    to.documentType = from.documentType;
    to.InformationType = from.InformationType;
    to.fileSaveType = from.fileSaveType;
    to.PaperSize = from.PaperSize;
    to.putDocumentOrientation(from.getDocumentOrientation(), false);
    to.putPageWidth(from.getPageWidth(), false);
    to.putPageHeight(from.getPageHeight(), false);
    to.putLeftMargin(from.getLeftMargin(), false);
    to.putRightMargin(from.getRightMargin(), false);
    to.putTopMargin(from.getTopMargin(), false);
    to.putBottomMargin(from.getBottomMargin(), false);
}

// The letters a result window prints or copies: those still ticked in its
// list, and only those that were merged.
std::vector<MergedRecord> tickedLetters(const MergeResultNavigator& letters) {
    std::vector<MergedRecord> ticked;
    for (int i = 0; i < letters.recordCount(); ++i) {
        const MergedRecord& record = letters.records()[size_t(i)];
        if (!letters.isExcluded(i) && !record.mergeFailed) {
            ticked.push_back(record);
        }
    }
    return ticked;
}

} // namespace

// ---------------------------------------------------------------------------

MergeResultAttachment::MergeResultAttachment(frmDocument& document, std::unique_ptr<MergeRun> run)
    : QObject(&document), m_document(document), m_navigator(std::move(run), document.rtfText()) {
    setObjectName(QStringLiteral("mergeResult"));
    m_list = new QListWidget(&document);
    m_list->setObjectName(QStringLiteral("lstMergeRecipients"));
    m_list->setAccessibleName(QStringLiteral("Merge recipients"));
    m_list->setMaximumWidth(200);
    m_list->setMinimumWidth(140);
    refreshList();
    document.setSidePanel(m_list);
    connect(m_list, &QListWidget::currentRowChanged, this, [this](int row) {
        if (row >= 0 && row != m_navigator.currentRecord()) {
            showRecord(row);
        }
    });
    connect(m_list, &QListWidget::itemChanged, this, [this](QListWidgetItem* item) {
        m_navigator.setExcluded(m_list->row(item), item->checkState() != Qt::Checked);
    });
    connect(&document.rtfText(), &RichTextBox::changed, this, [this] {
        if (!app().isCreatingDocument) {
            m_navigator.markChanged();
            m_edited = true;
        }
    });
}

MergeResultAttachment* MergeResultAttachment::of(const frmDocument* document) {
    return document ? document->findChild<MergeResultAttachment*>(QStringLiteral("mergeResult"),
                                                                  Qt::FindDirectChildrenOnly)
                    : nullptr;
}

void MergeResultAttachment::showRecord(int index) {
    m_navigator.showRecord(index);
    afterMove();
}

void MergeResultAttachment::afterMove() {
    {
        const QSignalBlocker quiet(m_list);
        m_list->setCurrentRow(m_navigator.currentRecord());
    }
    // The page setup is the template's for every letter: the new text only
    // needs the view back at its top, not a second layout.
    if (PageView* view = m_document.pageView()) {
        view->verticalScrollBar()->setValue(0);
        view->horizontalScrollBar()->setValue(0);
    }
    // Swapping the text is no edit.
    m_document.rtfText().document()->setModified(m_edited);
    m_document.setHasDocumentChanged(m_edited);
    Q_EMIT recordShown(m_navigator.currentName());
}

void MergeResultAttachment::refreshList() {
    const QSignalBlocker quiet(m_list);
    m_list->clear();
    const std::vector<MergedRecord>& records = m_navigator.records();
    for (size_t i = 0; i < records.size(); ++i) {
        const MergedRecord& record = records[i];
        QString text = record.name;
        QStringList notes;
        if (!record.failure.isEmpty()) {
            notes << QStringLiteral("not done: ") + record.failure;
        }
        if (!record.emptyPlaceholders.isEmpty()) {
            notes << QStringLiteral("empty: ") +
                         record.emptyPlaceholders.join(QStringLiteral(", "));
        }
        if (!notes.isEmpty()) {
            text = QStringLiteral("! ") + text;
        }
        auto* item = new QListWidgetItem(text, m_list);
        item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
        item->setCheckState(m_navigator.isExcluded(int(i)) ? Qt::Unchecked : Qt::Checked);
        QStringList tip = notes;
        if (!record.savedPath.isEmpty()) {
            tip << QStringLiteral("Saved as ") + record.savedPath;
        }
        item->setToolTip(tip.join(QLatin1Char('\n')));
    }
    m_list->setCurrentRow(m_navigator.currentRecord());
}

// ---------------------------------------------------------------------------

MergeWindowCommands::MergeWindowCommands(frmMain& main) : QObject(&main), m_main(main) {
    setObjectName(QStringLiteral("modMergeControl"));
    m_control.initializeMergeToolBar();
    m_panel = new cbrMergeTools(m_control, &main);
    main.addToolBarBreak(Qt::TopToolBarArea);
    main.addToolBar(Qt::TopToolBarArea, m_panel->tutorialBar());
    main.addToolBarBreak(Qt::TopToolBarArea);
    main.addToolBar(Qt::TopToolBarArea, m_panel);
    // The recipient dialog and printing come with their own routines.
    m_panel->setCategoryAvailable(1, false);
    m_panel->setNavigationAvailable(QStringLiteral("Print"), false);
    showTutorial(false);

    connect(m_panel, &cbrMergeTools::listChosen, this, &MergeWindowCommands::onListChosen);
    connect(m_panel, &cbrMergeTools::categoryClicked, this,
            &MergeWindowCommands::onCategoryClicked);
    connect(m_panel, &cbrMergeTools::navigationClicked, this, &MergeWindowCommands::navigate);
    // A closing window is still listed while it goes: look once it is gone.
    connect(&main, &frmMain::activeDocumentChanged, this, [this] {
        QMetaObject::invokeMethod(this, &MergeWindowCommands::setupMergeToolBar,
                                  Qt::QueuedConnection);
    });
}

MergeWindowCommands::~MergeWindowCommands() = default;

void MergeWindowCommands::setRecipientDialog(RecipientDialog dialog) {
    m_dialog = std::move(dialog);
    m_panel->setCategoryAvailable(1, static_cast<bool>(m_dialog));
}

void MergeWindowCommands::setResultPrinter(ResultPrinter printer) {
    m_printer = std::move(printer);
    m_panel->setNavigationAvailable(QStringLiteral("Print"), static_cast<bool>(m_printer));
    const QString command = QStringLiteral("mnuMergeMergePrinter");
    if (m_printer && !m_main.hasRoute(command)) {
        // A result prints its letters; any other document prints as File >
        // Print does.
        m_main.addRoute(command, [this] {
            if (MergeResultAttachment::of(activeDocument())) {
                navigate(QStringLiteral("Print"));
            } else {
                m_main.runCommand(QStringLiteral("mnuFilePrint"));
            }
        });
        m_main.refreshMenuStatus();
    }
}

frmDocument* MergeWindowCommands::activeDocument() const {
    QMdiSubWindow* sub = m_main.activeDocumentWindow();
    return sub ? qobject_cast<frmDocument*>(sub->widget()) : nullptr;
}

template <typename Work> void MergeWindowCommands::busy(Work&& work) {
    AppContext& ctx = app();
    const bool was = ctx.isCreatingDocument;
    ctx.isCreatingDocument = true;
    try {
        work();
    } catch (const QmError& fault) {
        ctx.isCreatingDocument = was;
        tell(fault.description());
        return;
    } catch (...) {
        ctx.isCreatingDocument = was;
        throw;
    }
    ctx.isCreatingDocument = was;
}

const ViewSetting* MergeWindowCommands::tutorialSetting() {
    for (const ViewSetting& setting : viewSettings()) {
        if (setting.command == QLatin1String("mnuViewToolbarMergeTutorial")) {
            return &setting;
        }
    }
    return nullptr;
}

void MergeWindowCommands::showTutorial(bool shown) {
    m_panel->tutorialBar()->setVisible(shown);
    if (QAction* action =
            m_main.commands()->action(QStringLiteral("mnuViewToolbarMergeTutorial"))) {
        action->setChecked(shown);
    }
}

void MergeWindowCommands::toggleTutorial() {
    // The action has flipped its own check mark already.
    QAction* action = m_main.commands()->action(QStringLiteral("mnuViewToolbarMergeTutorial"));
    const bool shown = action && action->isChecked();
    showTutorial(shown);
    m_tutorialRead = true;
    const ViewSetting* setting = tutorialSetting();
    if (clsINI* ini = app().iniSettings; ini && setting) {
        ini->setKeyValue(setting->section, setting->key,
                         shown ? QStringLiteral("True") : QStringLiteral("False"));
    }
}

void MergeWindowCommands::setupMergeToolBar() {
    // The settings file comes up after the main window: the tutorial line
    // takes its setting at the first document.
    if (!m_tutorialRead && app().iniSettings) {
        const ViewSetting* setting = tutorialSetting();
        if (setting) {
            showTutorial(clsINI::isTrueValue(app().iniSettings->getKeyString(
                setting->section, setting->key, setting->defaultValue)));
        }
        m_tutorialRead = true;
    }
    frmDocument* document = activeDocument();
    if (!document) {
        m_panel->apply(modMergeControl::setupMergeToolBar(1, InformationKind::Companies, true));
        m_panel->setTutorial(modMergeControl::noDocumentHelpLine());
        return;
    }
    clsInsertFieldsInRTB* fields = app().fieldInserter;
    if (fields) {
        fields->setTargetTextBox(&document->rtfText());
    }
    if (document->documentType() == DocumentModel::Template && fields) {
        const int kind = toInt(document->InformationType());
        // Any other rebuild of the catalogue (a test, a merge) renumbers the
        // rows the lists point at.
        if (kind != m_listedKind || fields->tableGeneration() != m_listedGeneration) {
            busy([&] { m_control.fillFieldLists(document->InformationType()); });
            m_listedKind = kind;
            m_listedGeneration = fields->tableGeneration();
        }
        m_control.refreshDates();
    }
    m_panel->apply(modMergeControl::setupMergeToolBar(document->documentType(),
                                                      document->InformationType(), true));
    if (MergeResultAttachment* result = MergeResultAttachment::of(document)) {
        m_panel->setRecipientName(result->navigator().currentName());
    }
}

MergeTemplateSource MergeWindowCommands::sourceOf(frmDocument& document) const {
    MergeTemplateSource source;
    copyPageSetup(document.model(), source.model);
    source.caption = document.DocumentCaption;
    source.rtf = document.mergeRTBText();
    source.pages = document.totalPages();
    document.IDList.copyEntireListToSecondList(source.IDList);
    source.SQLFilter = document.SQLFilter;
    return source;
}

void MergeWindowCommands::testMergeDocument() {
    frmDocument* document = activeDocument();
    if (!document || app().isCreatingDocument) {
        return;
    }
    const MergeTemplateSource source = sourceOf(*document);
    busy([&] { MergeDocumentFlow::testMergeButton(source); });
}

void MergeWindowCommands::mergeButton() {
    if (frmDocument* document = activeDocument()) {
        mergeDocument(*document);
    }
}

frmDocument* MergeWindowCommands::mergeDocument(frmDocument& document, Recipients from) {
    if (app().isCreatingDocument) {
        return nullptr;
    }
    bool approved = false;
    const MergeTemplateSource source = sourceOf(document);
    busy([&] { approved = MergeDocumentFlow::approveMerge(source); });
    return approved ? createNewMergeDocument(document, from) : nullptr;
}

frmDocument* MergeWindowCommands::createNewMergeDocument(frmDocument& source, Recipients from) {
    ProcedureScope scope(app().errors, "QuillmerePad.exe-modDocument-createNewMergeDocument");
    QPointer<frmDocument> templateWindow(&source);
    const bool given = !source.IDList.isEmpty() || !stringControl::isBlank(source.SQLFilter);
    MergeDocumentFlow::RecipientChooser chooser;
    if (m_dialog && !(from == Recipients::GivenFirst && given)) {
        // The dialogs work on the template itself, so what they pick stays
        // with it for the next merge.
        chooser = [this, templateWindow](InformationKind, FieldTable& ids, QString& filter) {
            if (!templateWindow || !m_dialog(*templateWindow)) {
                return false;
            }
            templateWindow->IDList.copyEntireListToSecondList(ids);
            filter = templateWindow->SQLFilter;
            return true;
        };
    }
    std::unique_ptr<MergeRun> run;
    busy([&] {
        auto request = MergeDocumentFlow::chooseRecipients(sourceOf(source), chooser);
        if (!request) {
            return;
        }
        NullProgress none;
        ProgressReporter& progress = app().progress ? *app().progress : none;
        run = MergeDocumentFlow::createMergeDoc(std::move(*request), progress);
    });
    if (!run || !templateWindow) {
        return nullptr;
    }

    m_main.newDocument(++app().unnamedDocumentCount);
    const QList<QMdiSubWindow*> windows = m_main.MDIArea()->subWindowList();
    auto* result =
        windows.isEmpty() ? nullptr : qobject_cast<frmDocument*>(windows.last()->widget());
    if (!result) {
        return nullptr;
    }
    const MergeResultDocument& merged = run->result();
    DocumentModel& model = result->model();
    copyPageSetup(merged.model, model);
    result->setupDocument(true, true);
    result->setDocumentType(DocumentModel::MergeResults);
    result->setInformationType(merged.model.InformationType);
    merged.IDList.copyEntireListToSecondList(result->IDList);
    result->SQLFilter = merged.SQLFilter;
    result->DocumentFileName.clear();
    result->DocumentCaption = MergeDocumentFlow::resultCaption(source.DocumentCaption);
    windows.last()->setWindowTitle(result->DocumentCaption);

    auto* attachment = new MergeResultAttachment(*result, std::move(run));
    connect(attachment, &MergeResultAttachment::recordShown, this,
            [this, result](const QString& name) {
                if (activeDocument() == result) {
                    m_panel->setRecipientName(name);
                }
            });
    attachment->showRecord(0);
    result->setIsDocumentSaved(false);
    if (attachment->navigator().result().stoppedByUser) {
        tell(QStringLiteral("The merge was stopped after %1 letters; only they are in this result.")
                 .arg(attachment->navigator().recordCount()));
    }
    setupMergeToolBar();
    m_main.refreshMenuStatus();
    return result;
}

bool MergeWindowCommands::saveMergeDoc(frmDocument& result) {
    return !app().isCreatingDocument && fileLetters(result);
}

bool MergeWindowCommands::fileLetters(frmDocument& result) {
    MergeResultAttachment* attachment = MergeResultAttachment::of(&result);
    if (!attachment) {
        return false;
    }
    MergeResultNavigator& navigator = attachment->navigator();
    int failures = -1;
    busy([&] {
        NullProgress none;
        ProgressReporter& progress = app().progress ? *app().progress : none;
        failures = navigator.saveMergeDocument(progress);
    });
    attachment->refreshList();
    if (failures < 0) {
        return false; // the fault has been told
    }
    if (failures > 0) {
        QStringList lines;
        int named = 0;
        for (size_t i = 0; i < navigator.records().size(); ++i) {
            const MergedRecord& record = navigator.records()[i];
            if (!navigator.isExcluded(int(i)) && !record.failure.isEmpty() &&
                named++ < kNamedFailures) {
                lines << record.name + QStringLiteral(": ") + record.failure;
            }
        }
        if (failures > kNamedFailures) {
            lines << QStringLiteral("... and %1 more.").arg(failures - kNamedFailures);
        }
        tell(QStringLiteral("%1 of the merged documents could not be saved; the others were "
                            "saved in the clients' folders.\n\n")
                 .arg(failures) +
             lines.join(QLatin1Char('\n')));
    } else if (navigator.result().stoppedByUser) {
        tell(QStringLiteral("The saving was stopped.  The documents saved before that are in the "
                            "clients' folders; save again to save the rest."));
    }
    if (!navigator.allSaved()) {
        return false;
    }
    for (const MergedRecord& record : navigator.records()) {
        if (!record.savedPath.isEmpty()) {
            result.DocumentFileName = record.savedPath;
        }
    }
    attachment->markSaved();
    result.rtfText().document()->setModified(false);
    result.setHasDocumentChanged(false);
    result.setIsDocumentSaved(true);
    return true;
}

void MergeWindowCommands::changeTemplateInformation(frmDocument& document, InformationKind kind) {
    if (!document.changeTemplateInformation(kind)) {
        return;
    }
    m_listedKind = -1;
    setupMergeToolBar();
    m_main.refreshMenuStatus();
}

void MergeWindowCommands::navigate(const QString& key) {
    frmDocument* document = activeDocument();
    MergeResultAttachment* attachment = MergeResultAttachment::of(document);
    if (!attachment || app().isCreatingDocument) {
        return;
    }
    MergeResultNavigator& navigator = attachment->navigator();
    if (key == QLatin1String("Save")) {
        saveMergeDoc(*document);
        return;
    }
    if (key == QLatin1String("Print")) {
        if (m_printer) {
            if (navigator.currentRecordChanged()) {
                navigator.saveRTF();
            }
            busy([&] { m_printer(*document, navigator); });
        }
        return;
    }
    if (key == QLatin1String("SaveLetterPdf")) {
        saveLetterAsPdf(*document, navigator);
        return;
    }
    if (key == QLatin1String("SaveAllPdf")) {
        saveAllAsPdf(*document, navigator);
        return;
    }
    if (key == QLatin1String("First")) {
        navigator.moveFirstRecord();
    } else if (key == QLatin1String("Previous")) {
        navigator.movePreviousRecord();
    } else if (key == QLatin1String("Next")) {
        navigator.moveNextRecord();
    } else if (key == QLatin1String("Last")) {
        navigator.moveLastRecord();
    } else {
        return;
    }
    attachment->showRecord(navigator.currentRecord());
}

void MergeWindowCommands::saveLetterAsPdf(frmDocument& result, MergeResultNavigator& letters) {
    const int current = letters.currentRecord();
    if (current < 0 || !app().fileDialogs) {
        return;
    }
    if (letters.currentRecordChanged()) {
        letters.saveRTF();
    }
    const MergedRecord& record = letters.records()[size_t(current)];
    if (record.mergeFailed) {
        tell(QStringLiteral("This letter could not be merged, so there is nothing to save as "
                            "PDF.\n\n") +
             record.failure);
        return;
    }
    QString suggested;
    if (!record.savedPath.isEmpty()) {
        suggested = pdfPathBeside(record.savedPath);
    } else {
        QString folder =
            app().workingFolders ? app().workingFolders->getMyDocumentsFolder() : QString();
        if (folder.isEmpty()) {
            folder = QDir::homePath();
        }
        suggested = QDir(folder).filePath(cleanFolderName(record.name) + QStringLiteral(".pdf"));
    }
    const std::optional<QString> chosen = askPdfPath(QStringLiteral("Save as PDF"), suggested);
    if (!chosen) {
        return;
    }
    const QString& path = *chosen;
    if (exportMergeDocPdf({record}, result.model(), path, false)) {
        m_main.setStatusPanel(
            1, QStringLiteral("Saved %1 as %2").arg(record.name, QDir::toNativeSeparators(path)));
    }
}

void MergeWindowCommands::saveAllAsPdf(frmDocument& result, MergeResultNavigator& letters) {
    // Each PDF goes beside its filed letter: letters not filed yet are filed
    // first, as Save would; those that cannot be filed have been named.
    if (!letters.allSaved()) {
        saveMergeDoc(result);
    }
    std::vector<MergedRecord> filed;
    for (const MergedRecord& record : tickedLetters(letters)) {
        if (!record.savedPath.isEmpty() && fileControl::FileExists(record.savedPath)) {
            filed.push_back(record);
        }
    }
    if (filed.empty()) {
        return;
    }
    if (exportMergeDocPdf(filed, result.model(), QString(), true)) {
        m_main.setStatusPanel(
            1, QStringLiteral("Saved %1 PDF files beside the filed letters").arg(filed.size()));
    }
}

void MergeWindowCommands::onListChosen(int list, int entry) {
    frmDocument* document = activeDocument();
    if (!document || app().isCreatingDocument) {
        return;
    }
    MergeListAction action;
    busy([&] { action = m_control.onListClick(list, entry, &document->rtfText()); });
    switch (action.kind) {
    case MergeListAction::Kind::ChangeKind:
        changeTemplateInformation(*document, action.informationType);
        break;
    case MergeListAction::Kind::InsertLetterhead:
        m_main.runCommand(QStringLiteral("mnuInsertLetterhead"));
        break;
    case MergeListAction::Kind::Inserted:
        document->adjustDisplayForCursorPosition();
        document->setFocus();
        break;
    case MergeListAction::Kind::Nothing:
        break;
    }
}

void MergeWindowCommands::onCategoryClicked(int index) {
    frmDocument* document = activeDocument();
    if (!document || app().isCreatingDocument) {
        return;
    }
    switch (index) {
    case 1:
        if (m_dialog) {
            m_dialog(*document);
        }
        break;
    case 5:
        testMergeDocument();
        break;
    case 6:
        mergeButton();
        break;
    default:
        break;
    }
}

void installMergeCommands(frmMain& main) {
    auto* commands = new MergeWindowCommands(main);
    main.addRoute(QStringLiteral("mnuMergeTestMerge"),
                  [commands] { commands->testMergeDocument(); });
    main.addRoute(QStringLiteral("mnuMergeMergeNewDoc"), [commands] { commands->mergeButton(); });
    const std::pair<const char*, InformationKind> kinds[] = {
        {"mnuMergeMergeCompany", InformationKind::Companies},
        {"mnuMergeMergeContact", InformationKind::Contacts},
        {"mnuMergeMergeRemitt", InformationKind::Tasks},
        {"mnuMergeMergeAppointment", InformationKind::Appointments},
    };
    for (const auto& [command, kind] : kinds) {
        main.addRoute(QLatin1String(command), [commands, kind = kind] {
            if (frmDocument* document = commands->activeDocument()) {
                commands->changeTemplateInformation(*document, kind);
            }
        });
    }
    // File > Save and the closing question file a result's letters.
    if (DocumentCommands* documents = documentCommands(main)) {
        documents->setMergeSaver(
            [commands](frmDocument& result) { return commands->fileLetters(result); });
    }
    // A result window prints its ticked letters as one job.
    commands->setResultPrinter([&main](frmDocument& result, MergeResultNavigator& letters) {
        printMergeDoc(&main, tickedLetters(letters), result.model(), result.DocumentCaption);
    });
    const QString tutorial = QStringLiteral("mnuViewToolbarMergeTutorial");
    if (!main.hasRoute(tutorial)) {
        main.addRoute(tutorial, [commands] { commands->toggleTutorial(); });
    }
}
