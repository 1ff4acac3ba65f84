#include "ui/LiveSpellChecker.h"

#include "context/AppContext.h"
#include "files/clsWorkingFolderLocation.h"
#include "platform/MsgboxClass.h"
#include "platform/errorClass.h"
#include "spell/LiveSpelling.h"
#include "spell/SpellCheckSession.h"
#include "spell/clsSpellCheck.h"
#include "ui/PageView.h"
#include "ui/frmDocument.h"
#include "ui/frmMain.h"

#include <QChildEvent>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMouseEvent>
#include <QPointer>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextDocument>
#include <memory>

namespace {

// Paragraphs checked at one time at most: a window shows far fewer.
constexpr int kMaxParagraphs = 400;
// Quiet time after a key before checking, so that typing never waits.
constexpr int kTypingPauseMs = 250;
constexpr int kScrollPauseMs = 60;

bool g_enabled = true;
QList<LiveSpellChecker*> g_checkers;

// The word list of live spelling: one for the program, loaded on first use
// from the templates folder like the dialog's (a damaged list gives way to
// the built-in one), with the words added since.
struct WordSource {
    QString folder;
    // When the list file was last written, as loaded: a word added by the
    // spell-check dialog (or another window) takes its underline away.
    QDateTime listWritten;
    std::unique_ptr<clsSpellCheck> spell;
    // Quiet: a list that cannot be opened simply leaves words unmarked.
    ScriptedMsgbox silent;
    QSet<QString> accepted;
    QHash<QString, std::vector<LiveSpelling::Range>> cache;

    clsSpellCheck* open() {
        const QString wanted = app().workingFolders
                                   ? app().workingFolders->getTemplatesFolder()
                                   : clsWorkingFolderLocation().getDefaultTemplatesFolder();
        if (!spell || wanted != folder ||
            QFileInfo(spell->databasePath()).lastModified() != listWritten) {
            folder = wanted;
            accepted.clear();
            cache.clear();
            spell = std::make_unique<clsSpellCheck>();
            spell->setMsgboxClass(&silent);
            spell->setAppFolder(folder);
            spell->openSpellCheckDatabase();
            listWritten = QFileInfo(spell->databasePath()).lastModified();
        }
        return spell->FailedToInitializeFlag() ? nullptr : spell.get();
    }
};

WordSource& source() {
    static WordSource words;
    return words;
}

QTextCharFormat underline() {
    QTextCharFormat format;
    format.setUnderlineStyle(QTextCharFormat::WaveUnderline);
    format.setUnderlineColor(Qt::red);
    return format;
}

} // namespace

LiveSpellChecker::LiveSpellChecker(frmDocument& document)
    : QObject(&document), m_document(document) {
    setObjectName(QStringLiteral("LiveSpellChecker"));
    g_checkers << this;
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &LiveSpellChecker::refresh);
    connect(&document.rtfText(), &RichTextBox::changed, this, [this] { schedule(kTypingPauseMs); });
    PageView* view = document.pageView();
    connect(view->verticalScrollBar(), &QScrollBar::valueChanged, this,
            [this] { schedule(kScrollPauseMs); });
    view->viewport()->installEventFilter(this);
    // Not at once: the first check loads the word list, and the window is
    // painted first.
    schedule(kTypingPauseMs);
}

LiveSpellChecker::~LiveSpellChecker() {
    g_checkers.removeAll(this);
}

void LiveSpellChecker::setEnabled(bool on) {
    g_enabled = on;
    for (LiveSpellChecker* checker : std::as_const(g_checkers)) {
        checker->refresh();
    }
}

bool LiveSpellChecker::isEnabled() {
    return g_enabled;
}

void LiveSpellChecker::schedule(int delayMs) {
    if (g_enabled) {
        m_timer.start(delayMs);
    }
}

void LiveSpellChecker::refresh() {
    m_timer.stop();
    std::vector<PageLayout::Highlight> marks;
    RichTextBox& box = m_document.rtfText();
    clsSpellCheck* spell = g_enabled && !box.Locked() ? source().open() : nullptr;
    if (spell != nullptr) {
        PageView* view = m_document.pageView();
        auto [first, last] = view->visibleRange();
        // The paragraph being edited counts even when scrolled away.
        const int caret = box.textCursor().position();
        const QTextDocument* document = box.document();
        const QTextCharFormat format = underline();
        WordSource& words = source();
        const auto check = [&](const QTextBlock& block) {
            const QString text = block.text();
            auto cached = words.cache.constFind(text);
            if (cached == words.cache.cend()) {
                if (words.cache.size() > 20000) {
                    words.cache.clear();
                }
                cached = words.cache.insert(text, LiveSpelling::misspelledWords(
                                                      spell->wordDatabase(), text, words.accepted));
            }
            for (const LiveSpelling::Range& r : *cached) {
                const int start = block.position() + r.start;
                marks.push_back({start, start + r.length, format});
            }
        };
        QTextBlock block = document->findBlock(std::min(first, last));
        const QTextBlock end = document->findBlock(std::max(first, last));
        const QTextBlock edited = document->findBlock(caret);
        bool editedSeen = false;
        for (int n = 0; block.isValid() && n < kMaxParagraphs; block = block.next(), ++n) {
            check(block);
            editedSeen = editedSeen || block == edited;
            if (block == end) {
                break;
            }
        }
        if (!editedSeen && edited.isValid()) {
            check(edited);
        }
    }
    m_underlines = marks;
    m_document.pageView()->setExtraHighlights(std::move(marks));
}

QStringList LiveSpellChecker::suggestionsFor(const QString& word) const {
    clsSpellCheck* spell = source().open();
    if (spell == nullptr) {
        return {};
    }
    SpellCheckSession session(*spell);
    session.listSuggestions(word);
    return session.suggestions();
}

void LiveSpellChecker::addWord(const QString& word) {
    WordSource& words = source();
    clsSpellCheck* spell = words.open();
    if (spell == nullptr) {
        return;
    }
    QString reason = spell->wordListProblem();
    if (reason.isEmpty()) {
        try {
            spell->wordDatabase().Database_Add(word.toLower());
        } catch (const QmError& fault) {
            const QString list = QDir::toNativeSeparators(spell->databasePath());
            reason = fault.number() == QmError::PermissionDenied
                         ? QStringLiteral("the word list \"%1\" is read-only").arg(list)
                         : QStringLiteral("the word list \"%1\" cannot be written").arg(list);
        }
    }
    if (!reason.isEmpty()) {
        if (MsgboxClass* box = app().msgbox) {
            box->showMessage(word + QStringLiteral(" cannot be added to the dictionary because ") +
                             reason + QLatin1Char('.'));
        }
        return;
    }
    words.accepted.insert(word.toLower());
    words.cache.clear();
    for (LiveSpellChecker* checker : std::as_const(g_checkers)) {
        checker->refresh();
    }
}

bool LiveSpellChecker::showSuggestions(int position, const QPoint& globalPosition) {
    const auto hit = std::find_if(m_underlines.begin(), m_underlines.end(),
                                  [position](const PageLayout::Highlight& h) {
                                      return position >= h.start && position < h.end;
                                  });
    if (hit == m_underlines.end()) {
        return false;
    }
    const int start = hit->start;
    const int end = hit->end;
    RichTextBox& box = m_document.rtfText();
    QTextCursor word(box.document());
    word.setPosition(start);
    word.setPosition(end, QTextCursor::KeepAnchor);
    const QString text = word.selectedText();

    QMenu menu(m_document.pageView());
    menu.setObjectName(QStringLiteral("mnuSpellPopup"));
    const QStringList suggestions = suggestionsFor(text).mid(0, kMenuSuggestions);
    for (const QString& suggestion : suggestions) {
        menu.addAction(suggestion, this, [this, start, end, suggestion] {
            RichTextBox& target = m_document.rtfText();
            QTextCursor replace(target.document());
            replace.setPosition(start);
            replace.setPosition(end, QTextCursor::KeepAnchor);
            target.setTextCursor(replace);
            target.setSelText(suggestion);
            refresh();
        });
    }
    if (suggestions.isEmpty()) {
        menu.addAction(QStringLiteral("(no suggestions)"))->setEnabled(false);
    }
    menu.addSeparator();
    menu.addAction(QStringLiteral("Add to Dictionary"), this, [this, text] { addWord(text); });
    menu.exec(globalPosition);
    return true;
}

bool LiveSpellChecker::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::MouseButtonPress) {
        auto* mouse = static_cast<QMouseEvent*>(event);
        if (mouse->button() == Qt::RightButton && !m_underlines.empty()) {
            const int position = m_document.pageView()->positionAt(mouse->position().toPoint());
            if (showSuggestions(position, mouse->globalPosition().toPoint())) {
                return true;
            }
        }
    } else if (event->type() == QEvent::Resize) {
        schedule(kScrollPauseMs);
    }
    return QObject::eventFilter(watched, event);
}

namespace {

// Finds document windows as the area shows them: the area does not always
// announce a window it adds (not while another program has the focus).
class LiveSpellingInstaller : public QObject {
public:
    explicit LiveSpellingInstaller(QMdiArea* area) : QObject(area) {
        area->viewport()->installEventFilter(this);
        connect(area, &QMdiArea::subWindowActivated, this, &LiveSpellingInstaller::attach);
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::ChildPolished) {
            attach(qobject_cast<QMdiSubWindow*>(static_cast<QChildEvent*>(event)->child()));
        }
        return QObject::eventFilter(watched, event);
    }

private:
    void attach(QMdiSubWindow* sub) {
        auto* document = sub ? qobject_cast<frmDocument*>(sub->widget()) : nullptr;
        if (document &&
            !document->findChild<LiveSpellChecker*>(QString(), Qt::FindDirectChildrenOnly)) {
            new LiveSpellChecker(*document);
        }
    }
};

} // namespace

void installLiveSpelling(frmMain& window) {
    new LiveSpellingInstaller(window.MDIArea());
}
