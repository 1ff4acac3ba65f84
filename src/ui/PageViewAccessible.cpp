#include "ui/PageViewAccessible.h"

#include "documents/PageLayout.h"
#include "platform/richtext/RichTextBox.h"
#include "ui/PageView.h"

#include <QAbstractTextDocumentLayout>
#include <QTextCursor>
#include <QTextDocument>
#include <algorithm>

PageViewAccessible::PageViewAccessible(PageView* view)
    : QAccessibleWidget(view, QAccessible::EditableText) {}

QAccessibleInterface* PageViewAccessible::factory(const QString& className, QObject* object) {
    if (className == QLatin1String("PageView") && object != nullptr && object->isWidgetType()) {
        return new PageViewAccessible(static_cast<PageView*>(object));
    }
    return nullptr;
}

PageView* PageViewAccessible::view() const {
    return static_cast<PageView*>(widget());
}

QString PageViewAccessible::plainText() const {
    return view()->box().document()->toPlainText();
}

void* PageViewAccessible::interface_cast(QAccessible::InterfaceType type) {
    if (type == QAccessible::TextInterface) {
        return static_cast<QAccessibleTextInterface*>(this);
    }
    if (type == QAccessible::EditableTextInterface) {
        return static_cast<QAccessibleEditableTextInterface*>(this);
    }
    return QAccessibleWidget::interface_cast(type);
}

QAccessible::State PageViewAccessible::state() const {
    QAccessible::State s = QAccessibleWidget::state();
    s.editable = !view()->box().Locked();
    s.readOnly = view()->box().Locked();
    s.multiLine = true;
    s.selectableText = true;
    return s;
}

QString PageViewAccessible::text(QAccessible::Text type) const {
    if (type == QAccessible::Value) {
        return plainText();
    }
    return QAccessibleWidget::text(type);
}

void PageViewAccessible::selection(int selectionIndex, int* startOffset, int* endOffset) const {
    const QTextCursor cursor = view()->box().textCursor();
    if (selectionIndex != 0 || !cursor.hasSelection()) {
        *startOffset = *endOffset = 0;
        return;
    }
    *startOffset = cursor.selectionStart();
    *endOffset = cursor.selectionEnd();
}

int PageViewAccessible::selectionCount() const {
    return view()->box().textCursor().hasSelection() ? 1 : 0;
}

void PageViewAccessible::addSelection(int startOffset, int endOffset) {
    setSelection(0, startOffset, endOffset);
}

void PageViewAccessible::removeSelection(int selectionIndex) {
    if (selectionIndex != 0) {
        return;
    }
    QTextCursor cursor = view()->box().textCursor();
    cursor.clearSelection();
    view()->box().setTextCursor(cursor);
}

void PageViewAccessible::setSelection(int selectionIndex, int startOffset, int endOffset) {
    if (selectionIndex != 0) {
        return;
    }
    const int last = characterCount();
    QTextCursor cursor = view()->box().textCursor();
    cursor.setPosition(std::clamp(startOffset, 0, last));
    cursor.setPosition(std::clamp(endOffset, 0, last), QTextCursor::KeepAnchor);
    view()->box().setTextCursor(cursor);
}

int PageViewAccessible::cursorPosition() const {
    return view()->box().textCursor().position();
}

void PageViewAccessible::setCursorPosition(int position) {
    QTextCursor cursor = view()->box().textCursor();
    cursor.setPosition(std::clamp(position, 0, characterCount()));
    view()->box().setTextCursor(cursor);
    view()->ensureCaretVisible();
}

QString PageViewAccessible::text(int startOffset, int endOffset) const {
    const QString all = plainText();
    const int from = std::clamp(startOffset, 0, int(all.size()));
    const int to = std::clamp(endOffset < 0 ? int(all.size()) : endOffset, from, int(all.size()));
    return all.mid(from, to - from);
}

int PageViewAccessible::characterCount() const {
    return view()->box().document()->characterCount() - 1;
}

QRect PageViewAccessible::characterRect(int offset) const {
    const QRect local = view()->viewportRectOf(std::clamp(offset, 0, characterCount()));
    return local.translated(view()->viewport()->mapToGlobal(QPoint(0, 0)));
}

int PageViewAccessible::offsetAtPoint(const QPoint& point) const {
    return view()->positionAt(view()->viewport()->mapFromGlobal(point));
}

void PageViewAccessible::scrollToSubstring(int startIndex, int /*endIndex*/) {
    setCursorPosition(startIndex);
}

QString PageViewAccessible::attributes(int offset, int* startOffset, int* endOffset) const {
    *startOffset = *endOffset = offset;
    return {};
}

void PageViewAccessible::deleteText(int startOffset, int endOffset) {
    replaceText(startOffset, endOffset, QString());
}

void PageViewAccessible::insertText(int offset, const QString& text) {
    replaceText(offset, offset, text);
}

void PageViewAccessible::replaceText(int startOffset, int endOffset, const QString& text) {
    RichTextBox& box = view()->box();
    // Assistive technology edits as the user would: never a locked text.
    if (box.Locked()) {
        return;
    }
    setSelection(0, startOffset, endOffset);
    QTextCursor cursor = box.textCursor();
    if (text.isEmpty()) {
        cursor.removeSelectedText();
        box.setTextCursor(cursor);
    } else {
        box.typeText(text);
    }
}
