#pragma once

#include <QString>
#include <optional>

// What a key means to a document window, decided without a display.
namespace DocumentKeys {

// documentType of a merge result locked for the archive.
inline constexpr int LockedResultType = 4;

// The message a key gives on a document of this type, if any: a locked
// merge result answers every key with it.
std::optional<QString> messageOnKey(int documentType);

// Whether a key, with the text it types, may have changed the text or moved
// the caret in a way that calls for the caret to be brought into view:
// typing, deleting, line ends and the caret keys answer true; modifier keys
// alone and function keys answer false.
bool bringsCaretIntoView(int qtKey, const QString& typed);

} // namespace DocumentKeys
