#include "documents/DocumentKeys.h"

#include <Qt>

namespace DocumentKeys {

std::optional<QString> messageOnKey(int documentType) {
    if (documentType == LockedResultType) {
        return QStringLiteral("You cannot change or modify this locked merge results document.  "
                              "It is locked for archival purposes and can only be viewed.");
    }
    return std::nullopt;
}

bool bringsCaretIntoView(int qtKey, const QString& typed) {
    switch (qtKey) {
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_Home:
    case Qt::Key_End:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
    case Qt::Key_Backspace:
    case Qt::Key_Delete:
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Tab:
        return true;
    default:
        break;
    }
    return !typed.isEmpty() && typed.at(0).isPrint();
}

} // namespace DocumentKeys
