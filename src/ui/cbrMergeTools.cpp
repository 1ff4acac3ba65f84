#include "ui/cbrMergeTools.h"

#include "app/modMenuStatus.h"

#include <QAction>
#include <QComboBox>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QStandardItemModel>
#include <QToolButton>

namespace {

const QStringList kNavigationKeys = {QStringLiteral("First"), QStringLiteral("Previous"),
                                     QStringLiteral("Next"),  QStringLiteral("Last"),
                                     QStringLiteral("Print"), QStringLiteral("Save")};

QString navigationIcon(const QString& key) {
    static const QHash<QString, QString> names = {
        {QStringLiteral("First"), QStringLiteral("go-first")},
        {QStringLiteral("Previous"), QStringLiteral("go-previous")},
        {QStringLiteral("Next"), QStringLiteral("go-next")},
        {QStringLiteral("Last"), QStringLiteral("go-last")},
        {QStringLiteral("Print"), QStringLiteral("document-print")},
        {QStringLiteral("Save"), QStringLiteral("document-save")},
    };
    return names.value(key);
}

// A list that is out of sight until its button drops it: it opens over the
// button and goes away again when its pop-up closes.
class DropDownList : public QComboBox {
public:
    using QComboBox::QComboBox;

    void dropAt(const QWidget* button) {
        setGeometry(button->geometry().x(), button->geometry().y(),
                    std::max(button->width(), sizeHint().width()), button->height());
        show();
        raise();
        showPopup();
    }
    void hidePopup() override {
        QComboBox::hidePopup();
        hide();
    }
};

} // namespace

cbrMergeTools::cbrMergeTools(modMergeControl& control, QWidget* parent)
    : QToolBar(QStringLiteral("Merge"), parent) {
    setObjectName(QStringLiteral("cbrMergeTools"));
    setAccessibleName(QStringLiteral("Merge tools"));

    m_tutorialBar = new QToolBar(QStringLiteral("Merge Tutorial"), parent);
    m_tutorialBar->setObjectName(QStringLiteral("picTutorial"));
    m_tutorial = new QLabel(m_tutorialBar);
    m_tutorial->setObjectName(QStringLiteral("lblTutorial"));
    m_tutorial->setWordWrap(true);
    // The line takes the width of the window, not of its longest word.
    m_tutorial->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    m_tutorial->setMinimumWidth(560);
    m_tutorial->setAccessibleName(QStringLiteral("Merge tutorial"));
    m_tutorialBar->addWidget(m_tutorial);

    const QStringList captions = modMergeControl::categoryCaptions();
    for (int i = 0; i < captions.size(); ++i) {
        auto* frame = new QFrame(this);
        frame->setObjectName(QStringLiteral("fraWordMergeCategories%1").arg(i));
        auto* row = new QHBoxLayout(frame);
        row->setContentsMargins(2, 0, 2, 0);
        auto* button = new QToolButton(frame);
        button->setObjectName(QStringLiteral("cmdWordMergeCategory%1").arg(i));
        // A down arrow marks the buttons that drop a list.
        button->setText(control.list(i) ? captions.at(i) + QStringLiteral(" \u25BE")
                                        : captions.at(i));
        button->setAccessibleName(captions.at(i));
        row->addWidget(button);
        QComboBox* list = nullptr;
        if (QStandardItemModel* model = control.list(i)) {
            auto* drop = new DropDownList(frame);
            list = drop;
            list->setObjectName(QStringLiteral("cboWordMergeCategory%1").arg(i));
            list->setAccessibleName(captions.at(i));
            list->setModel(model);
            list->setSizeAdjustPolicy(QComboBox::AdjustToContents);
            list->setPlaceholderText(captions.at(i));
            list->setCurrentIndex(-1);
            list->hide();
            // Activation, not a change of index: choosing the same field twice
            // inserts it twice.
            connect(list, &QComboBox::activated, this, [this, i, list](int entry) {
                Q_EMIT listChosen(i, entry);
                list->setCurrentIndex(-1);
            });
            button->setPopupMode(QToolButton::DelayedPopup);
            button->setArrowType(Qt::NoArrow);
            connect(button, &QToolButton::clicked, list, [drop, button] { drop->dropAt(button); });
        } else {
            connect(button, &QToolButton::clicked, this, [this, i] { Q_EMIT categoryClicked(i); });
        }
        m_frameActions << addWidget(frame);
        m_frames << frame;
        m_buttons << button;
        m_lists << list;
        m_available << true;
    }

    m_navigation = new QToolBar(QStringLiteral("Merge Results"), this);
    m_navigation->setObjectName(QStringLiteral("tbrWordMerge4"));
    m_navigation->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    for (const QString& key : kNavigationKeys) {
        QAction* action = m_navigation->addAction(QIcon::fromTheme(navigationIcon(key)), key, this,
                                                  [this, key] { Q_EMIT navigationClicked(key); });
        action->setObjectName(key);
        m_navigationAvailable.insert(key, true);
    }
    // PDF copies of the letters: the one on show, or one beside each filed
    // letter.
    auto* pdfMenu = new QMenu(m_navigation);
    pdfMenu->setObjectName(QStringLiteral("mnuMergePdf"));
    const std::pair<QString, QString> pdfChoices[] = {
        {QStringLiteral("SaveLetterPdf"), QStringLiteral("This Letter as PDF...")},
        {QStringLiteral("SaveAllPdf"),
         QStringLiteral("All Letters as PDF Beside Each Filed Letter")},
    };
    for (const auto& [key, caption] : pdfChoices) {
        QAction* choice =
            pdfMenu->addAction(caption, this, [this, key = key] { Q_EMIT navigationClicked(key); });
        choice->setObjectName(key);
    }
    QAction* pdf = m_navigation->addAction(QIcon::fromTheme(QStringLiteral("application-pdf")),
                                           QStringLiteral("Save as PDF"));
    pdf->setObjectName(QStringLiteral("Save as PDF"));
    pdf->setMenu(pdfMenu);
    if (auto* button = qobject_cast<QToolButton*>(m_navigation->widgetForAction(pdf))) {
        button->setPopupMode(QToolButton::InstantPopup);
    }
    m_navigationAvailable.insert(pdf->objectName(), true);
    m_navigationBarAction = addWidget(m_navigation);

    auto* recipientBar = new QToolBar(QStringLiteral("Merge Recipient"), this);
    recipientBar->setObjectName(QStringLiteral("tbrWordMerge3"));
    m_recipient = new QLineEdit(recipientBar);
    m_recipient->setObjectName(QStringLiteral("txtMergeCompany"));
    m_recipient->setReadOnly(true);
    m_recipient->setAccessibleName(QStringLiteral("Recipient"));
    m_recipient->setMinimumWidth(220);
    recipientBar->addWidget(m_recipient);
    m_recipientBarAction = addWidget(recipientBar);

    apply(modMergeControl::setupMergeToolBar(1, InformationKind::Companies, true));
    setTutorial(modMergeControl::noDocumentHelpLine());
}

void cbrMergeTools::apply(const MergeToolBarSetup& setup) {
    // A tool bar shows and hides its widgets through their actions.
    for (int i = 0; i < m_frameActions.size(); ++i) {
        m_frameActions[i]->setVisible(setup.categories.contains(i));
    }
    m_navigationBarAction->setVisible(setup.navigationShown);
    m_recipientBarAction->setVisible(setup.navigationShown);
    m_navigationEnabled = setup.navigationEnabled;
    for (QAction* action : m_navigation->actions()) {
        action->setEnabled(m_navigationEnabled &&
                           m_navigationAvailable.value(action->objectName()));
    }
    if (!setup.navigationShown) {
        m_recipient->clear();
    }
    setTutorial(setup.helpLine);
}

void cbrMergeTools::setTutorial(const QString& text) {
    m_tutorial->setText(text);
}

void cbrMergeTools::setRecipientName(const QString& name) {
    m_recipient->setText(name);
}

bool cbrMergeTools::categoryShown(int index) const {
    return index >= 0 && index < m_frameActions.size() && m_frameActions[index]->isVisible();
}

bool cbrMergeTools::navigationShown() const {
    return m_navigationBarAction->isVisible();
}

QAction* cbrMergeTools::navigationAction(const QString& key) const {
    for (QAction* action : m_navigation->actions()) {
        if (action->objectName() == key) {
            return action;
        }
    }
    return nullptr;
}

void cbrMergeTools::setCategoryAvailable(int index, bool available) {
    if (index < 0 || index >= m_buttons.size()) {
        return;
    }
    m_available[index] = available;
    m_buttons[index]->setEnabled(available);
    m_buttons[index]->setToolTip(available ? QString() : notAvailableYetTip());
}

void cbrMergeTools::setNavigationAvailable(const QString& key, bool available) {
    m_navigationAvailable.insert(key, available);
    if (QAction* action = navigationAction(key)) {
        action->setEnabled(available && m_navigationEnabled);
        action->setToolTip(available ? key : notAvailableYetTip());
    }
}
