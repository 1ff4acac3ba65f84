#pragma once

#include <QString>
#include <QStringList>
#include <optional>

// The private-profile calls over the INI text format: sections in square
// brackets, "key=value" lines. Sections and keys match without regard to
// case. Every call reads the file afresh; every change rewrites the whole
// file through a temporary file and a rename, keeping all other lines as
// they were (junk lines included) and the file's own line ends.
//
// The file is read and written in the single-byte encoding (bytes map to the
// first 256 code points), so that no byte of a damaged file is lost.
namespace PrivateProfile {

// The value, trimmed, or nothing when the section or key is missing. An
// empty value is returned as an empty string.
std::optional<QString> readValue(const QString& file, const QString& section, const QString& key);

// Section names in file order.
QStringList sectionNames(const QString& file);
// Key names of a section in file order; empty when the section is missing.
QStringList keyNames(const QString& file, const QString& section);

// Writes a key, creating the section (at the end, after a blank line) and
// the file when missing. Returns false when the file cannot be written.
bool writeValue(const QString& file, const QString& section, const QString& key,
                const QString& value);
bool deleteKey(const QString& file, const QString& section, const QString& key);
bool deleteSection(const QString& file, const QString& section);

// Replaces the file with the given text (CR LF line ends are the caller's).
bool writeWholeFile(const QString& file, const QString& text);

} // namespace PrivateProfile
